#include "PreviewPane.h"

#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QStringList>
#include <QVBoxLayout>

#include "DocumentTags.h"
#include "PreviewCanvas.h"
#include "SoundPlayer.h"
#include "TextEditorView.h"
#include "ThemeIcon.h"

namespace zelk {

namespace {

constexpr int delay = 150, bigDelay = 1000; // milliseconds
constexpr long bigText = 16 << 20;          // bytes
constexpr size_t bigElement = 8 << 20;      // bytes
constexpr int lastRatio = 65535;

// What the tag's character is called; empty for one without a name.
QString namesOf(const DocumentTags& tags, const TagRange& tag) {
    const auto characters = tags.characters();
    const CharacterId* id = characters == nullptr ? nullptr : characters->ofTagAt(tag.start);
    QStringList names;
    if (id != nullptr) {
        for (const CharacterName& name : characters->names(id->id))
            names.append(QString::fromStdString(name.text));
    }
    return names.join(QStringLiteral(", "));
}

} // namespace

PreviewRequest requestFor(DocumentTags& tags, const TagRange& tag) {
    const DocumentTags::MapPointer map = tags.map();
    PreviewRequest request;
    request.element = tags.element(tag);
    request.jpegTables = tags.smallElement(map->jpegTables());
    request.layout = map->layout();
    request.definition = [tags = QPointer(&tags), map](uint16_t id) {
        if (tags == nullptr || tags->map() != map)
            return std::string();
        std::string elements = tags->smallElement(map->definition(id));
        for (const TagRange& info : map->fontInfos(id))
            elements += tags->smallElement(info);
        return elements;
    };
    return request;
}

PreviewPane::PreviewPane(QWidget* parent)
    : Pane(tr("Preview"), parent), _worker(new PreviewWorker(this)), _canvas(new PreviewCanvas),
      _player(new SoundPlayer(this)), _ratio(new QSlider(Qt::Horizontal)), _play(new QPushButton),
      _showAnyway(new QPushButton(tr("Show"))), _words(new QLabel) {
    setObjectName(QStringLiteral("preview"));
    setAllowedAreas(Qt::AllDockWidgetAreas);
    layOut();
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, [this] { ask(false); });
    connect(_worker, &PreviewWorker::done, this, &PreviewPane::accept);
    connect(_canvas, &PreviewCanvas::glyphHovered, this, &PreviewPane::showGlyph);
    connect(_showAnyway, &QPushButton::clicked, this, [this] { ask(true); });
    connect(_play, &QPushButton::clicked, this, &PreviewPane::playOrStop);
    connect(_player, &SoundPlayer::changed, this, &PreviewPane::showPlayed);
    connect(_ratio, &QSlider::valueChanged, this, [this](int value) { _canvas->setRatio(double(value) / lastRatio); });
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool isShown) {
        _player->stop();
        if (isShown)
            askLater();
    });
    clear({});
    hide();
}

void PreviewPane::layOut() {
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(_canvas, 1);
    for (QWidget* widget : std::initializer_list<QWidget*>{_ratio, _play, _showAnyway, _words})
        layout->addWidget(widget);
    setWidget(content);
    _ratio->setRange(0, lastRatio);
    _ratio->setPageStep(lastRatio / 10);
    _ratio->setSingleStep(lastRatio / 100);
    _ratio->setAccessibleName(tr("Ratio of the morph shape"));
    _words->setWordWrap(true);
    _words->setTextInteractionFlags(Qt::TextSelectableByMouse);
    _words->setTextFormat(Qt::PlainText);
    // Words must not make the pane wider.
    _words->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void PreviewPane::showCaret(TextEditorView* editor) {
    watch(editor);
    _tag.reset();
    askLater();
}

void PreviewPane::showTag(TextEditorView& editor, const TagRange& tag) {
    watch(&editor);
    _tag = tag;
    askLater();
}

void PreviewPane::watch(TextEditorView* editor) {
    if (editor == _editor)
        return;
    if (_editor != nullptr)
        disconnect(_editor, nullptr, this, nullptr);
    _editor = editor;
    clear({});
    if (editor == nullptr)
        return;
    const auto follow = [this] {
        if (!_tag)
            askLater();
    };
    connect(editor, &TextControl::edited, this, follow);
    connect(editor, &TextEditorView::placeChanged, this, follow);
}

// Moving through a text or a list stays smooth.
void PreviewPane::askLater() {
    if (!isVisible())
        return;
    const bool isBig = _editor != nullptr && _editor->send(QsciScintillaBase::SCI_GETLENGTH) > bigText &&
                       !DocumentTags::of(*_editor).isCurrent();
    _timer.start(isBig ? bigDelay : delay);
}

void PreviewPane::ask(bool isForced) {
    if (!isVisible() || _editor == nullptr)
        return;
    DocumentTags& tags = DocumentTags::of(*_editor);
    connect(&tags, &DocumentTags::found, this, &PreviewPane::askLater, Qt::UniqueConnection);
    if (!tags.isCurrent()) {
        tags.find();
        if (_preview == nullptr)
            clear(tr("Looking for the tags…"));
        return;
    }
    const auto tag = _tag ? _tag : tags.tagAtCaret();
    if (!tag)
        clear(tr("There is no tag here."));
    else if (tag->end - tag->start > bigElement && !isForced)
        offer(tr("The tag is big."));
    else
        show(requestFor(tags, *tag), isForced);
    _names = tag ? namesOf(tags, *tag) : QString();
    showWords();
}

void PreviewPane::show(PreviewRequest request, bool isForced) {
    const bool isSame = _preview != nullptr && request.element == _request.element && request.layout == _request.layout;
    if (isSame && !isForced && _preview->problem().isEmpty())
        return;
    _request = std::move(request);
    _worker->start(_request);
}

void PreviewPane::accept(const std::shared_ptr<TagPreview>& preview) {
    const auto tagOf = [](const QString& words) { return words.section(QStringLiteral(" · "), 0, 0); };
    const bool isSameTag = _preview != nullptr && tagOf(_preview->words()) == tagOf(preview->words());
    _player->stop();
    _preview = preview;
    _showAnyway->hide();
    _ratio->setVisible(preview->isMorph());
    _play->setVisible(preview->sound() != nullptr);
    _play->setEnabled(preview->sound() != nullptr && SoundPlayer::hasDevice());
    _canvas->setPreview(preview, isSameTag);
    if (!isSameTag)
        _ratio->setValue(0);
    _caption = preview->words();
    showWords();
}

// The drawing of a text that has changed would show what is no longer there.
void PreviewPane::clear(const QString& words) {
    _player->stop();
    _worker->drop();
    _preview.reset();
    _canvas->setPreview(nullptr);
    for (QWidget* widget : std::initializer_list<QWidget*>{_ratio, _play, _showAnyway})
        widget->hide();
    _caption = words;
    showWords();
}

void PreviewPane::offer(const QString& words) {
    clear(words);
    _showAnyway->show();
}

void PreviewPane::showWords() {
    QStringList lines{_caption};
    if (_preview != nullptr && !_names.isEmpty())
        lines.append(tr("Called %1").arg(_names));
    if (_preview != nullptr)
        lines.append(_preview->problem());
    if (_play->isVisibleTo(this))
        lines.append(_play->isEnabled() ? _player->problem() : tr("There is no audio device."));
    lines.removeAll(QString());
    _words->setText(lines.join(u'\n'));
    _canvas->setAccessibleDescription(_words->text());
}

QString PreviewPane::words() const { return _words->text(); }

bool PreviewPane::isBusy() const { return _timer.isActive() || _worker->isBusy() || _canvas->isPainting(); }

void PreviewPane::showGlyph(const GlyphCell* cell) {
    if (_preview == nullptr)
        return;
    _caption = _preview->words();
    if (cell != nullptr) {
        _caption += tr("\nGlyph %1").arg(cell->index);
        if (cell->code)
            _caption += tr(", code %1 (U+%2 %3)")
                            .arg(*cell->code)
                            .arg(*cell->code, 4, 16, QLatin1Char('0'))
                            .arg(QChar(*cell->code).isPrint() ? QString(QChar(*cell->code)) : QString());
    }
    showWords();
}

void PreviewPane::playOrStop() {
    if (_player->isPlaying())
        _player->stop();
    else if (_preview != nullptr && _preview->sound() != nullptr)
        _player->play(_preview->sound());
}

void PreviewPane::showPlayed() {
    const bool isPlaying = _player->isPlaying();
    _canvas->setPlayed(_player->played());
    _play->setText(isPlaying ? tr("Stop") : tr("Play"));
    _play->setIcon(isPlaying ? QIcon() : themeIcon(QStringLiteral("play")));
    showWords();
}

} // namespace zelk
