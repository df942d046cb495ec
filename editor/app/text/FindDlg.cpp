#include "FindDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

namespace zelk {

FindDlg::FindDlg(QWidget* parent)
    : QFrame(parent), _rows(new QGridLayout), _choices(new QBoxLayout(QBoxLayout::LeftToRight)),
      _pattern(addField(0, tr("Fi&nd what:"))), _wholeWord(new QCheckBox(tr("Match &whole word only"), this)),
      _matchCase(new QCheckBox(tr("Match &case"), this)), _expression(new QCheckBox(tr("Regular e&xpression"), this)),
      _wrap(new QCheckBox(tr("Wrap ar&ound"), this)), _up(new QRadioButton(tr("&Up"), this)),
      _down(new QRadioButton(tr("&Down"), this)), _result(new QLabel(this)) {
    setWindowTitle(tr("Find"));
    setFrameShape(QFrame::StyledPanel);
    QPushButton *next = addButton(0, 2, tr("&Find Next")), *count = addButton(0, 3, tr("Coun&t")),
                *all = addButton(0, 4, tr("A&ll Documents"));
    _ownButtons = {next, count, all};
    connect(next, &QPushButton::clicked, this, &FindDlg::findAsked);
    connect(count, &QPushButton::clicked, this, &FindDlg::countAsked);
    all->setToolTip(tr("List what is found in all open documents (Ctrl+Shift+F)"));
    connect(all, &QPushButton::clicked, this, &FindDlg::findInAllAsked);
    auto* close = new QToolButton(this);
    close->setText(tr("Close"));
    close->setToolTip(tr("Close (Esc)"));
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setToolButtonStyle(Qt::ToolButtonIconOnly);
    close->setFocusPolicy(Qt::NoFocus);
    _rows->addWidget(close, 0, 5);
    connect(close, &QToolButton::clicked, this, &FindDlg::left);

    _result->setTextFormat(Qt::PlainText);
    _result->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    addOptions();
    _rows->setColumnStretch(1, 1);
    _rows->setVerticalSpacing(3);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(3);
    layout->addLayout(_rows);
    layout->addLayout(_choices);
    setOrder({}, {});
    hide();
}

void FindDlg::addOptions() {
    _down->setChecked(true);
    _wrap->setChecked(true);
    QHBoxLayout* lines[] = {new QHBoxLayout, new QHBoxLayout};
    for (QHBoxLayout* line : lines)
        _choices->addLayout(line);
    for (QAbstractButton* each :
         std::initializer_list<QAbstractButton*>{_wholeWord, _matchCase, _expression, _wrap, _up, _down}) {
        each->setShortcut({});
        lines[each == _wrap || each == _up || each == _down]->addWidget(each);
    }
    lines[0]->addStretch();
    lines[1]->addSpacing(12);
    lines[1]->addWidget(_result, 1);
    _choices->setStretch(1, 1);
    _choices->setSpacing(3);
    connect(_pattern, &QComboBox::editTextChanged, this, [this] {
        _result->clear();
        Q_EMIT optionsChanged();
    });
    for (QCheckBox* each : {_wholeWord, _matchCase, _expression})
        connect(each, &QCheckBox::toggled, this, &FindDlg::optionsChanged);
}

QComboBox* FindDlg::addField(int row, const QString& label) {
    auto* field = new QComboBox(this);
    field->setEditable(true);
    field->setCompleter(nullptr);
    field->setInsertPolicy(QComboBox::NoInsert);
    field->setMinimumContentsLength(12);
    field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* name = new QLabel(label, this);
    name->setBuddy(field);
    _rows->addWidget(name, row, 0);
    _rows->addWidget(field, row, 1);
    return field;
}

// Alt and its letter work while the bar has the keyboard: elsewhere they open menus.
QPushButton* FindDlg::addButton(int row, int column, const QString& text) {
    auto* button = new QPushButton(text, this);
    button->setAutoDefault(false);
    button->setShortcut({});
    _rows->addWidget(button, row, column);
    return button;
}

void FindDlg::setOrder(const QList<QWidget*>& fields, const QList<QWidget*>& buttons) {
    QList<QWidget*> order = {_pattern};
    order += fields;
    for (QPushButton* each : _ownButtons)
        order.append(each);
    order += buttons;
    order += QList<QWidget*>{_wholeWord, _matchCase, _expression, _wrap, _up, _down};
    for (qsizetype i = 0; i < order.size(); ++i) {
        if (i > 0)
            setTabOrder(order[i - 1], order[i]);
        order[i]->installEventFilter(this);
        if (auto* field = qobject_cast<QComboBox*>(order[i]))
            field->lineEdit()->installEventFilter(this);
    }
}

// --- its width -------------------------------------------------------------------------------------------------------

namespace {

int widthOf(const QLayoutItem* item) { return item->minimumSize().width(); }

} // namespace

QSize FindDlg::minimumSizeHint() const {
    int width = widthOf(_rows);
    for (int i = 0; i < _choices->count(); ++i)
        width = std::max(width, widthOf(_choices->itemAt(i)));
    const QMargins margins = layout()->contentsMargins();
    return {width + margins.left() + margins.right() + 2 * frameWidth(), QFrame::minimumSizeHint().height()};
}

void FindDlg::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    int width = 0; // of all in one line
    for (int i = 0; i < _choices->count(); ++i)
        width += widthOf(_choices->itemAt(i)) + _choices->spacing();
    const bool isNarrow = width > _choices->geometry().width();
    _choices->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void FindDlg::present(const QString& pattern) {
    if (!pattern.isEmpty())
        _pattern->setEditText(pattern);
    _result->clear();
    show();
    _pattern->lineEdit()->selectAll();
    _pattern->setFocus();
}

void FindDlg::takeOver(const FindDlg& other) {
    setHistory(other.history());
    _pattern->setEditText(other._pattern->currentText());
    const std::pair<QAbstractButton*, const QAbstractButton*> pairs[] = {{_wholeWord, other._wholeWord},
                                                                         {_matchCase, other._matchCase},
                                                                         {_expression, other._expression},
                                                                         {_wrap, other._wrap},
                                                                         {_up, other._up},
                                                                         {_down, other._down}};
    for (const auto& [mine, theirs] : pairs) {
        if (theirs->isChecked() || qobject_cast<QCheckBox*>(mine) != nullptr)
            mine->setChecked(theirs->isChecked());
    }
}

SearchOptions FindDlg::options() const {
    return {_pattern->currentText().toStdString(), _wholeWord->isChecked(), _matchCase->isChecked(),
            _expression->isChecked()};
}

bool FindDlg::searchesUp() const { return _up->isChecked(); }

bool FindDlg::wraps() const { return _wrap->isChecked(); }

void FindDlg::showResult(const QString& text, bool isFailure) {
    QPalette colors = palette();
    if (isFailure) {
        const bool isDark = colors.color(QPalette::Window).lightness() < 128;
        colors.setColor(QPalette::WindowText, isDark ? QColor(0xFF, 0x80, 0x80) : QColor(0xB0, 0x00, 0x20));
    }
    _result->setPalette(colors);
    _result->setText(text);
    _result->setToolTip(text);
}

// --- keys ------------------------------------------------------------------------------------------------------------

bool FindDlg::eventFilter(QObject* watched, QEvent* event) {
    const bool isOverride = event->type() == QEvent::ShortcutOverride;
    if (!isOverride && event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    auto& key = *static_cast<QKeyEvent*>(event);
    if (isOverride) {
        if (key.modifiers() != Qt::AltModifier || withMnemonic(key.key()) == nullptr)
            return false;
        key.accept(); // so that it comes as a key
        return true;
    }
    return press(key);
}

bool FindDlg::press(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Escape) {
        Q_EMIT left();
        return true;
    }
    if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        if (auto* button = qobject_cast<QPushButton*>(QApplication::focusWidget()))
            button->click();
        else if (event.modifiers().testFlag(Qt::ShiftModifier))
            Q_EMIT findPreviousAsked();
        else
            Q_EMIT entered();
        return true;
    }
    QWidget* target = event.modifiers() == Qt::AltModifier ? withMnemonic(event.key()) : nullptr;
    if (target == nullptr)
        return false;
    target->setFocus(Qt::ShortcutFocusReason);
    if (auto* button = qobject_cast<QAbstractButton*>(target))
        button->click();
    return true;
}

QWidget* FindDlg::withMnemonic(int key) const {
    const QKeySequence wanted(QKeyCombination(Qt::AltModifier, static_cast<Qt::Key>(key)));
    for (auto* button : findChildren<QAbstractButton*>()) {
        if (QKeySequence::mnemonic(button->text()) == wanted)
            return button;
    }
    for (const auto* label : findChildren<QLabel*>()) {
        if (label->buddy() != nullptr && QKeySequence::mnemonic(label->text()) == wanted)
            return label->buddy();
    }
    return nullptr;
}

// --- earlier texts ---------------------------------------------------------------------------------------------------

void FindDlg::remember() { rememberIn(_pattern); }

void FindDlg::rememberIn(QComboBox* field) {
    constexpr int most = 20;
    const QString text = field->currentText();
    const int known = field->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (known == 0 || text.isEmpty())
        return;
    const QSignalBlocker quiet(field);
    if (known > 0)
        field->removeItem(known);
    field->insertItem(0, text);
    while (field->count() > most)
        field->removeItem(most);
    field->setCurrentIndex(0);
}

QStringList FindDlg::historyOf(const QComboBox* field) {
    QStringList texts;
    for (int i = 0; i < field->count(); ++i)
        texts.append(field->itemText(i));
    return texts;
}

void FindDlg::setHistoryOf(QComboBox* field, const QStringList& texts) {
    const QSignalBlocker quiet(field);
    const QString text = field->currentText();
    field->clear();
    field->addItems(texts);
    field->setCurrentIndex(-1);
    field->setEditText(text);
}

} // namespace zelk
