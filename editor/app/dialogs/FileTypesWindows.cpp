#include <QCoreApplication>
#include <QDir>
#include <QSettings>

#include <windows.h>

#include <shlobj.h>

#include "FileTypes.h"

namespace zelk {

namespace {

struct Kind {
    const char *suffix, *name, *shown;
    bool isOwn; // of no other program
};

constexpr Kind kinds[] = {{".swf", "Zelk.Movie", QT_TRANSLATE_NOOP("zelk::FileTypes", "Flash movie"), false},
                          {".zelk", "Zelk.Project", QT_TRANSLATE_NOOP("zelk::FileTypes", "Zelk project"), true}};

QSettings classes() {
    return QSettings(QStringLiteral("HKEY_CURRENT_USER\\Software\\Classes"), QSettings::NativeFormat);
}

QString key(const char* start, const char* rest) { return QString::fromLatin1(start) + QString::fromLatin1(rest); }

QString commandKey(const Kind& kind) { return key(kind.name, "/shell/open/command/."); }

QString command() {
    const QString program = QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
    return QStringLiteral("\"%1\" \"%2\"").arg(program, QStringLiteral("%1"));
}

} // namespace

bool canSetFileTypes() { return true; }

bool hasFileTypes() { return classes().value(commandKey(kinds[0])).toString() == command(); }

void setFileTypes(bool isOffered) {
    QSettings settings = classes();
    for (const Kind& kind : kinds) {
        const QString offer = key(kind.suffix, "/OpenWithProgids/") + QString::fromLatin1(kind.name);
        const QString own = key(kind.suffix, "/.");
        if (isOffered) {
            settings.setValue(key(kind.name, "/."), QCoreApplication::translate("zelk::FileTypes", kind.shown));
            settings.setValue(key(kind.name, "/DefaultIcon/."),
                              QDir::toNativeSeparators(QCoreApplication::applicationFilePath()) + QStringLiteral(",0"));
            settings.setValue(commandKey(kind), command());
            settings.setValue(offer, QString());
            if (kind.isOwn)
                settings.setValue(own, QString::fromLatin1(kind.name));
        } else {
            settings.remove(QString::fromLatin1(kind.name));
            settings.remove(offer);
            if (kind.isOwn)
                settings.remove(QString::fromLatin1(kind.suffix));
        }
    }
    settings.sync();
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}

} // namespace zelk
