// Shows a job while it runs and waits for it without blocking the window.
#pragma once

#include <QDialog>
#include <QTimer>

#include "Job.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace zelk {

class ProgressBarDialog : public QDialog {
    Q_OBJECT
public:
    ProgressBarDialog(QWidget* parent, const QString& title, ThreadParams& params);

    /// Runs the work on a thread of its own and returns when it has ended. The dialog appears when that takes longer
    /// than a moment. Throws what the work threw.
    void run(JobWork work);

    /// Asks the job to stop; the dialog stays until it has.
    void reject() override;

private:
    void waitAMoment(const Worker& worker);
    void poll(const Worker& worker);

    ThreadParams& _params;
    QProgressBar* _bar;
    QLabel* _estimate;
    QPushButton* _cancel;
};

} // namespace zelk
