// Children of a block's elements, taken straight from the text while they are of the usual form.
#pragma once

#include "AbcPart.h"
#include "XmlElement.h"
#include "XmlQuickElement.h"

namespace xml2swf {

/// Reads whole children. What was noted of one that is not of the usual form is forgotten: it is read again as nodes.
template <class Target, class Read>
class AbcQuickChildren final : public XmlQuickReader {
public:
    AbcQuickChildren(XmlReadContext& context, AbcPart& part, Target& target, Read& read)
        : _context(context), _part(part), _target(target), _read(read) {}

    size_t read(std::string_view text, size_t start, size_t end) override {
        XmlQuickText quick(text, start, end);
        size_t done = start;
        for (quick.passBlanks(); quick.atElement(); quick.passBlanks()) {
            const auto partMark = _part.mark();
            const auto targetMark = _target.mark();
            {
                XmlQuickElement child(_context, quick);
                _read(child);
            }
            if (!quick.isUsual()) {
                _target.rollBack(targetMark);
                _part.rollBack(partMark);
                break;
            }
            done = quick.position();
        }
        return done;
    }

private:
    XmlReadContext& _context;
    AbcPart& _part;
    Target& _target;
    Read& _read;
};

/// Lets `read` read all children in order, as elements of either kind.
template <class Target, class Read>
void readAbcChildren(XmlElement& element, const XmlNameGroup& names, AbcPart& part, Target& target, Read read) {
    AbcQuickChildren<Target, Read> quick(element.context(), part, target, read);
    for (XmlElement child : element.children(names, quick))
        read(child);
}

template <class Target, class Read>
void readAbcChildren(XmlQuickElement& element, const XmlNameGroup& names, AbcPart&, Target&, Read read) {
    for (XmlQuickElement child : element.children(names))
        read(child);
}

} // namespace xml2swf
