// A text as a page of HTML that looks like the text view.
#pragma once

#include <QIODevice>

#include "Job.h"
#include "PrintedText.h"

namespace zelk {

/// [worker thread] With the lines' numbers, which are not copied with the text. Throws JobCancelled, and
/// std::runtime_error when the device does not take it.
void writeHtml(PrintedText text, const QString& title, QIODevice& device, JobProgress& progress);

} // namespace zelk
