// Each element on a line of its own.
#include "Tests.h"

#include "Exceptions.h"
#include "FormatXml.h"

namespace {

using namespace zelk;

struct FormatCase {
    const char* text;     // with "{" and "}" around the selection, or neither
    const char* expected; // empty where nothing changes
};

TEST(FormatXml, PutsElementsOnLines) {
    const FormatCase cases[] = {
        {"<?xml version=\"1.0\"?><A><B  x = '1'\n y=\"a  b\"/><C></C><!-- c --></A>\n",
         "<?xml version=\"1.0\"?>\n<A>\n    <B x='1' y=\"a  b\" />\n    <C></C>\n    <!-- c -->\n</A>\n"},
        {"<A><B> t <C/></B><D> </D><E><![CDATA[<x> ]]>  </E><F>&#32;<G/></F></A>",
         "<A>\n    <B> t <C/></B>\n    <D> </D>\n    <E><![CDATA[<x> ]]>  </E>\n    <F>&#32;<G/></F>\n</A>"},
        {"<A>\n    <B />\n</A>", ""},
        {"\xEF\xBB\xBF <A/>", "\xEF\xBB\xBF <A />"},
        {"<A>text<B><C/></B></A>", ""},
        {"<A><B><C/>{<D/>}<E/></B><F/></A>", "<A><B><C/>\n        <D />\n        <E/></B><F/></A>"},
        {"<A><B><C/></B><F>{</F><G>}<H/></G></A>",
         "<A><B><C/></B>\n    <F></F>\n    <G>\n        <H />\n    </G>\n</A>"},
        {"<A><B x=\"{1}\"/><C/></A>", "<A>\n    <B x=\"1\" />\n    <C/></A>"},
        {"<A>t<B>{<C/>}</B></A>", ""},
    };
    for (const FormatCase& c : cases) {
        std::string text = c.text;
        size_t start = 0, end = 0;
        if (text.find('{') != text.npos) {
            text.erase(start = text.find('{'), 1);
            text.erase(end = text.find('}'), 1);
        }
        for (size_t caret = 0; caret <= text.size(); ++caret) {
            const FormattedXml formatted = formatXml(text, start, end, caret);
            std::string changed = text;
            for (size_t i = formatted.changes.size(); i-- > 0;)
                changed.replace(formatted.changes[i].start, formatted.changes[i].end - formatted.changes[i].start,
                                formatted.changes[i].text);
            ASSERT_EQ(changed, *c.expected == 0 ? text : c.expected) << c.text;
            EXPECT_EQ(formatted.changes.empty(), changed == text);
            ASSERT_LE(formatted.caret, changed.size());
            if (caret < text.size() && text[caret] == '<') {
                EXPECT_EQ(changed.substr(formatted.caret, 2), text.substr(caret, 2)) << "the caret stays at its tag";
            }
        }
    }
    EXPECT_THROW(formatXml("<A><B></A>", 0, 0, 0), XmlException);
}

} // namespace
