// What commands ask of the user, asked by dialogs.
#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include "Session.h"

namespace zelk {

class WindowDialogs : public IUserInterface {
public:
    explicit WindowDialogs(QWidget* parent) : _parent(parent) {}

    /// Full paths; none when the user cancels.
    QStringList chooseFilesToOpen(const QString& folder);

    /// Where payloads are looked for at first: beside the document.
    void setPayloadFolder(const Document& document);

    std::optional<std::string> chooseFileToSave(const std::string& proposal) override;
    std::optional<std::string> chooseFileToExport(const std::string& proposal) override;
    std::optional<std::string> chooseFileToImport(const std::vector<std::string>& kinds) override;
    SaveAnswer askToSave(const Document& document) override;
    bool askToReplaceChanged(const Document& document, bool keepsBackup) override;
    bool askToReload(const Document& document) override;
    std::optional<uint32_t> askForRow(uint32_t current, uint32_t rows) override;
    std::optional<MovieSettings> askForMovieSettings(const MovieSettings& current) override;
    void report(const Failure& failure) override;
    void inform(const Message& message) override;
    void runJob(const std::string& title, ThreadParams& params, JobWork work) override;

private:
    QPointer<QWidget> _parent;
    QString _payloadFolder; // of the last export or import
};

} // namespace zelk
