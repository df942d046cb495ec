#include "FindDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zelk {

FindDlg::FindDlg(QWidget* parent)
    : QDialog(parent), _fields(new QGridLayout), _buttons(new QVBoxLayout), _pattern(addField(tr("Fi&nd what:"))),
      _wholeWord(new QCheckBox(tr("Match &whole word only"), this)), _matchCase(new QCheckBox(tr("Match &case"), this)),
      _expression(new QCheckBox(tr("Regular e&xpression"), this)), _wrap(new QCheckBox(tr("Wrap a&round"), this)),
      _up(new QRadioButton(tr("&Up"), this)), _result(new QLabel(this)) {
    setWindowTitle(tr("Find"));
    auto* down = new QRadioButton(tr("&Down"), this);
    down->setChecked(true);
    _wrap->setChecked(true);
    auto* direction = new QGroupBox(tr("Direction"), this);
    auto* directions = new QHBoxLayout(direction);
    directions->addWidget(_up);
    directions->addWidget(down);

    auto* choices = new QGridLayout;
    choices->addWidget(_wholeWord, 0, 0);
    choices->addWidget(_matchCase, 1, 0);
    choices->addWidget(_expression, 2, 0);
    choices->addWidget(_wrap, 3, 0);
    choices->addWidget(direction, 0, 1, 4, 1, Qt::AlignTop);

    QPushButton* findNext = addButton(tr("&Find Next"));
    findNext->setDefault(true);
    connect(findNext, &QPushButton::clicked, this, &FindDlg::findAsked);
    connect(addButton(tr("C&ount")), &QPushButton::clicked, this, &FindDlg::countAsked);
    _buttons->addStretch();
    auto* close = new QPushButton(tr("Close"), this);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    _buttons->addWidget(close);

    _result->setTextFormat(Qt::PlainText);
    _result->setWordWrap(true);
    auto* left = new QVBoxLayout;
    left->addLayout(_fields);
    left->addLayout(choices);
    left->addWidget(_result);
    left->addStretch();
    auto* all = new QHBoxLayout(this);
    all->addLayout(left, 1);
    all->addLayout(_buttons);
    connect(_pattern, &QComboBox::editTextChanged, this, [this] { _result->clear(); });
}

QComboBox* FindDlg::addField(const QString& label) {
    auto* field = new QComboBox(this);
    field->setEditable(true);
    field->setCompleter(nullptr);
    field->setInsertPolicy(QComboBox::NoInsert);
    field->setMinimumWidth(300);
    field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* name = new QLabel(label, this);
    name->setBuddy(field);
    const int row = _fields->rowCount();
    _fields->addWidget(name, row, 0);
    _fields->addWidget(field, row, 1);
    return field;
}

QPushButton* FindDlg::addButton(const QString& text) {
    auto* button = new QPushButton(text, this);
    button->setAutoDefault(false);
    _buttons->insertWidget(_buttonCount++, button); // "Close" and the room above it stay below
    return button;
}

void FindDlg::present(const QString& pattern) {
    if (!pattern.isEmpty())
        _pattern->setEditText(pattern);
    _result->clear();
    if (!isVisible()) { // Where it hides the least of the text.
        const QWidget* window = parentWidget();
        move(window->mapToGlobal(QPoint(std::max(0, window->width() - sizeHint().width() - 40), 100)));
    }
    show();
    raise();
    activateWindow();
    _pattern->lineEdit()->selectAll();
    _pattern->setFocus();
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
}

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

} // namespace zelk
