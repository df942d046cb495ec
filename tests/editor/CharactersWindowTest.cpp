// Characters in the window: names, definitions, uses, another id, what a check finds.

#include "DocumentTags.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;

constexpr const char* text = R"(<Movie SwfVersion="8" Width="10" Height="10" FrameRate="12">
    <DefineShape ShapeId="1"><Bounds/><FillStyles/><LineStyles/><Edges/></DefineShape>
    <DefineSprite Id="2" FrameCount="1">
        <PlaceObject2 Depth="1" CharacterId="1" Name="ball" Move="false" />
    </DefineSprite>
    <PlaceObject2 Depth="1" CharacterId="2" Move="false" />
    <PlaceObject2 Depth="2" CharacterId="1" Move="false" />
</Movie>)";

class CharactersWindow : public WindowTest {
protected:
    CharactersWindow() {
        editor().setText(text);
        goTo("CharacterId=\"2\"");
    }
    size_t at(const std::string& word) { return editor().text().find(word); }
    void goTo(const std::string& word) {
        editor().gotoOffset(at(word) + 2);
        QApplication::processEvents();
    }
    UsesPanel& panel() { return *window->findChild<UsesPanel*>(); }
    QTreeView& uses() { return panel().list(); }
};

TEST_F(CharactersWindow, KeysGoToDefinitionsAndThroughUses) {
    const size_t place = editor().caret();
    press(Qt::Key_F12);
    ASSERT_TRUE(runUntil([&] { return editor().caret() != place; }));
    EXPECT_EQ(editor().caret(), at("2\" FrameCount"));
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(editor().caret(), place);
    goTo("ShapeId");
    press(Qt::Key_F12, Qt::ShiftModifier);
    ASSERT_TRUE(runUntil([&] { return uses().model()->rowCount() == 3; }));
    const auto cell = [&](int row, int column) { return uses().model()->index(row, column).data().toString(); };
    EXPECT_EQ(cell(0, 2), QStringLiteral("defined"));
    EXPECT_EQ(cell(1, 0), QStringLiteral("4"));
    EXPECT_EQ(cell(1, 3), QStringLiteral("sprite 2"));
    EXPECT_EQ(cell(2, 3), QStringLiteral("movie"));
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(editor().caret(), at("1\" Name"));
    EXPECT_TRUE(editor().hasFocus());
    for (const auto& [key, modifier] : {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_F12, Qt::ShiftModifier}}) {
        press(Qt::Key_F12, Qt::ShiftModifier);
        EXPECT_TRUE(uses().hasFocus());
        press(key, modifier);
        EXPECT_FALSE(panel().isVisible());
        EXPECT_TRUE(editor().hasFocus());
    }
    press(Qt::Key_F12, Qt::ShiftModifier);
    editor().replaceBytes(at("<PlaceObject2 Depth=\"2\""), at("</Movie>"), "");
    ASSERT_TRUE(runUntil([&] { return uses().model()->rowCount() == 2; })) << "it looks again by itself";
}

TEST_F(CharactersWindow, NamesStandBesideIdsInListStatusAndCompletion) {
    DocumentTags& tags = DocumentTags::of(editor());
    tags.find();
    ASSERT_TRUE(runUntil([&] { return tags.isCurrent(); }));
    goTo("CharacterId=\"1\" Move");
    EXPECT_TRUE(statusShows(QStringLiteral("Character 1, called ball, used 2 times")));
    editor().gotoOffset(at("1\" Move"));
    editor().complete();
    char chosen[100] = {};
    editor().SendScintilla(QsciScintillaBase::SCI_AUTOCGETCURRENTTEXT, 0UL, static_cast<void*>(chosen));
    EXPECT_STREQ(chosen, "1  DefineShape ball");
    editor().send(QsciScintillaBase::SCI_AUTOCCANCEL);
    window->actions().action(CommandId::tagList)->trigger();
    DocumentViewList& list = window->tabs().current()->list();
    EXPECT_TRUE(statusShows(QStringLiteral("Character 1, called ball, used 2 times")));
    EXPECT_TRUE(list.tree().currentIndex().siblingAtColumn(1).data().toString().contains(
        QStringLiteral("CharacterId=\"1\" (ball)")));
    press(Qt::Key_F12);
    ASSERT_TRUE(runUntil([&] { return list.currentTag() == 0; })) << "the definition, in the list";
}

TEST_F(CharactersWindow, AnotherIdIsOneStep) {
    goTo("ShapeId");
    answers.addText("7");
    window->actions().action(CommandId::renameCharacter)->trigger();
    EXPECT_EQ(at("\"1\" Name"), std::string::npos);
    EXPECT_NE(at("ShapeId=\"7\""), std::string::npos);
    EXPECT_NE(at("CharacterId=\"7\" Name"), std::string::npos);
    editor().undo();
    EXPECT_EQ(editor().text(), text);
    answers.addText("2");
    answers.addButton(QMessageBox::Ok, QStringLiteral("Another character has the id 2."));
    window->actions().action(CommandId::renameCharacter)->trigger();
    EXPECT_EQ(editor().text(), text);
}

} // namespace
