#include "ProgressBarDialog.h"

#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace zelk {

using namespace std::chrono_literals;

ProgressBarDialog::ProgressBarDialog(QWidget* parent, const QString& title, ThreadParams& params)
    : QDialog(parent), _params(params), _bar(new QProgressBar(this)), _estimate(new QLabel(this)),
      _cancel(new QPushButton(tr("Cancel"), this)) {
    setWindowTitle(tr("Please wait"));
    setModal(true);
    auto* what = new QLabel(fontMetrics().elidedText(title, Qt::ElideMiddle, 420), this);
    what->setTextFormat(Qt::PlainText);
    _bar->setRange(0, JobProgress::range);
    _bar->setAccessibleName(what->text());
    auto* row = new QHBoxLayout;
    row->addWidget(_estimate, 1);
    row->addWidget(_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(what);
    layout->addWidget(_bar);
    layout->addLayout(row);
    setMinimumWidth(460);
    connect(_cancel, &QPushButton::clicked, this, &ProgressBarDialog::reject);
}

void ProgressBarDialog::run(JobWork work) {
    Worker worker(_params, work);
    waitAMoment(worker);
    if (!worker.hasEnded()) {
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [this, &worker] { poll(worker); });
        timer.start(100ms);
        exec();
    }
    worker.finish();
}

// A dialog that flashes up for a quick job only disturbs. Keys that are pressed meanwhile wait.
void ProgressBarDialog::waitAMoment(const Worker& worker) {
    QEventLoop loop;
    QTimer timer;
    int left = 20;
    connect(&timer, &QTimer::timeout, &loop, [&] {
        if (worker.hasEnded() || --left == 0)
            loop.quit();
    });
    timer.start(10ms);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void ProgressBarDialog::poll(const Worker& worker) {
    if (worker.hasEnded()) {
        done(Accepted);
        return;
    }
    _bar->setValue(_params.progress.position());
    if (!_params.progress.isCancelled())
        _estimate->setText(QString::fromStdString(_params.progress.estimate()));
}

void ProgressBarDialog::reject() {
    _params.progress.cancel();
    _cancel->setEnabled(false);
    _estimate->setText(tr("Stopping..."));
}

} // namespace zelk
