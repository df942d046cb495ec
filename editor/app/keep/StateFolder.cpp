#include "StateFolder.h"

#include <QDir>
#include <QStandardPaths>

namespace zelk {

// Qt has a place for it from 6.7 on.
QString stateFolder() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    QString folder = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::homePath() + QStringLiteral("/.local/state");
    return folder + QStringLiteral("/Orvane/Zelk");
#else
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
#endif
}

} // namespace zelk
