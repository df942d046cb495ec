// Values that no field has, found by compiling.
#include <algorithm>
#include <functional>
#include <set>

#include "Conversion.h"
#include "MovieScan.h"
#include "Problems.h"
#include "XmlElement.h"
#include "XmlNumbers.h"

namespace zelk {

using namespace xml2swf;

namespace {

using Kind = Problem::Kind;
using Severity = Problem::Severity;

/// Hears of values that readers take for another.
class ValueListener : public XmlReadObserver {
public:
    explicit ValueListener(Problems& problems) : _problems(problems) {}

    void askedForAttribute(const XmlElement& element, std::string_view name, const XmlValueForm& form) override {
        const auto value = element.peek(name);
        if (!value || fits(*value, form) || !_told.emplace(element.offset(), name).second)
            return;
        Problem problem;
        problem.kind = Kind::wrongValue;
        problem.offset = element.offset() - 1;
        problem.tag = element.name();
        problem.reason = "attribute " + std::string(name) + ": \"" + std::string(value->substr(0, longestValue)) +
                         "\" is not a value that fits (" + form.fitting(name) + ")";
        _problems.add(std::move(problem));
    }
    void askedForPresence(const XmlElement&, std::string_view) override {}
    void skippedAttribute(const XmlElement&, std::string_view) override {}
    void missedChild(const XmlElement&, std::string_view) override {}
    void askedForAll(const XmlElement&, std::string_view) override {}
    void askedForChildAt(const XmlElement&, uint32_t, std::string_view) override {}
    void askedForGroup(const XmlElement&, const XmlNameGroup&) override {}
    void comparedName(const XmlElement&, std::string_view) override {}
    void skipped(const XmlElement&) override {}
    void askedForContent(const XmlElement&, XmlContent) override {}

private:
    static constexpr size_t longestValue = 80;

    // Other values are refused where they do not fit.
    static bool fits(std::string_view value, const XmlValueForm& form) {
        using enum XmlValueForm::Kind;
        if (form.kind == boolean)
            return value == "true" || value == "false" || parseInteger(value);
        if (form.kind != name && form.kind != nameOrInteger)
            return true;
        if (std::ranges::find(form.names, value, &XmlName::name) != form.names.end())
            return true;
        const auto number = form.kind == nameOrInteger ? parseInteger(value) : std::nullopt;
        return number && *number >= form.low && *number <= form.high;
    }

    Problems& _problems;
    std::set<std::pair<size_t, std::string_view>> _told; // names stay valid
};

// What was refused, and the place of it.
struct Refusal {
    size_t offset;
    std::string element, attribute, reason;
};

class ValueFinder {
public:
    ValueFinder(std::string_view text, Problems& problems, IProgressReporter* progress)
        : _text(text), _problems(problems), _progress(progress), _listener(problems) {}

    void run() {
        constexpr size_t mostBytes = 64 << 20, most = 100; // that are compiled once more to find the next one
        size_t triesLeft = std::clamp<size_t>(mostBytes / std::max<size_t>(_text.size(), 1), 1, most);
        while (const std::optional<Refusal> refusal = compile()) {
            tell(*refusal);
            if (triesLeft-- == 0 || !takeOut(*refusal))
                return;
        }
    }

private:
    std::optional<Refusal> compile() {
        const std::string_view text = _copy.empty() ? _text : std::string_view(_copy);
        libswf::SwfWarnings warnings;
        ConversionOptions options;
        options.keepRaw = true;
        options.warnings = &warnings;
        options.observer = &_listener;
        options.progress = _progress;
        MovieTarget target;
        try {
            xmlToSwf(text, target, options);
            constexpr int noCompression = 0;
            target.movie.serialise(noCompression, &warnings);
        } catch (const XmlSyntaxError&) {
            throw;
        } catch (const XmlValueError& error) {
            return Refusal{error.place.offset, error.element, error.attribute, error.reason};
        } catch (const Base64Error& error) {
            return Refusal{error.place.offset, {}, {}, error.what()};
        } catch (const MovieAttributeError& error) {
            return Refusal{error.place.offset, "Movie", error.attribute,
                           std::string(error.what()) + " (" + error.fitting + ")"};
        } catch (const libswf::SwfException& error) {
            return Refusal{Problem::nowhere, {}, {}, error.what()};
        }
        _problems.add(warnings);
        return {};
    }

    void tell(const Refusal& refusal) {
        Problem problem;
        problem.kind = Kind::wrongValue;
        problem.severity = Severity::error;
        problem.offset = refusal.offset == Problem::nowhere ? refusal.offset : elementAt(refusal.offset);
        problem.tag = refusal.element;
        problem.reason =
            refusal.attribute.empty() ? refusal.reason : "attribute " + refusal.attribute + ": " + refusal.reason;
        _problems.add(std::move(problem));
    }

    // The "<" before the place of an error, which is of a name or in a text.
    size_t elementAt(size_t offset) const {
        const size_t open = _text.rfind('<', offset);
        return open == std::string_view::npos ? 0 : open;
    }

    // Blanks in place of what was refused: of a whole tag, or of an attribute of the movie. Places stay.
    bool takeOut(const Refusal& refusal) {
        if (refusal.offset == Problem::nowhere)
            return false;
        if (_copy.empty()) {
            _copy = _text;
            _spans = findTagSpans(_text);
        }
        size_t start = 0, end = 0;
        for (const ElementSpan& span : _spans.spans) { // the last one around it is the innermost
            if (span.start > refusal.offset)
                break;
            if (refusal.offset < span.end && span.start >= _spans.movie.tagEnd) {
                start = span.start;
                end = span.end;
            }
        }
        if (end == 0 && refusal.offset < _spans.movie.tagEnd) {
            const std::string_view startTag =
                std::string_view(_copy).substr(_spans.movie.start, _spans.movie.tagEnd - _spans.movie.start);
            const auto attribute = attributeOf(startTag, refusal.attribute);
            if (!attribute)
                return false;
            start = static_cast<size_t>(attribute->name.data() - _copy.data());
            end = static_cast<size_t>(attribute->value.data() - _copy.data()) + attribute->value.size() + 1;
        }
        for (size_t at = start; at < end; ++at)
            _copy[at] = ' ';
        return end != 0;
    }

    const std::string_view _text;
    Problems& _problems;
    IProgressReporter* _progress;
    ValueListener _listener;
    std::string _copy; // without what was refused; empty while that is nothing
    XmlTagSpans _spans;
};

} // namespace

void findValueProblems(std::string_view text, Problems& problems, IProgressReporter* progress) {
    ValueFinder(text, problems, progress).run();
}

} // namespace zelk
