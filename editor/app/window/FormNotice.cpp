#include "FormNotice.h"

#include <QPushButton>

#include "DocumentView.h"
#include "DocumentViewTextCommands.h"
#include "NoticeBar.h"

namespace zelk {

using namespace guicommand;
using namespace guicommand::documentviewtext;

namespace {

const QString noticeName = QStringLiteral("form");

} // namespace

QString FormNotice::text(const FormDifferences& differences) {
    const auto values = [&] {
        return differences.values == 1 ? tr("1 value") : tr("%1 values").arg(differences.values);
    };
    const auto tags = [&] { return differences.tags == 1 ? tr("1 tag") : tr("%1 tags").arg(differences.tags); };
    if (differences.values == 0 && differences.tags == 0)
        return {};
    const QString what = differences.tags == 0     ? values()
                         : differences.values == 0 ? tags()
                                                   : tr("%1 and %2").arg(values(), tags());
    const bool isOne = differences.values + differences.tags == 1;
    return (isOne ? tr("%1 of this movie reads differently in players.")
                  : tr("%1 of this movie read differently in players."))
        .arg(what);
}

void FormNotice::show(DocumentView& view, Session& session) {
    const QString words = text(view.document().formDifferences);
    view.dropNotice(noticeName);
    if (words.isEmpty())
        return;
    NoticeBar* bar = view.addNotice(noticeName);
    bar->setText(words, tr("The classic form shows them as Zelk's own layouts do, or as bytes."));
    QObject::connect(bar->addButton(tr("&Show the Full Form")), &QPushButton::clicked, bar, [&view, &session] {
        ChangeFormCmd command(session, view.document(), view, true);
        if (!runCommand(session, command, &view))
            return;
        Q_EMIT view.stateChanged();
        Q_EMIT view.warningsChanged();
        view.dropNotice(noticeName);
    });
    QObject::connect(bar->addButton(tr("Hi&de")), &QPushButton::clicked, bar, [&view] {
        view.document().formDifferences = {}; // until the movie is opened again
        view.dropNotice(noticeName);
    });
}

} // namespace zelk
