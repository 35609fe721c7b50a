// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace kit {

struct FileRequest {
    enum class Kind { Open, Save };
    Kind kind = Kind::Open;
    QString caption;
    QString folder; // or a whole path to start from
    QString filter; // "Shapefile (*.shp)"
    QString suffix; // added to a name that has none, without the point ("gpkg")
};

/// The path that the user chose; nothing when cancelled. The one road to file dialogs (folders are
/// chosen by the host's browser).
[[nodiscard]] std::optional<QString> FChooseFile(QWidget* parent, const FileRequest& request);

/// Puts another chooser in the place of the system's for a scope (a test's answer, a host's own
/// dialog).
class FileChooserScope final {
public:
    using Chooser = std::function<std::optional<QString>(const FileRequest&)>;
    explicit FileChooserScope(Chooser chooser);
    FileChooserScope(const FileChooserScope&) = delete;
    FileChooserScope& operator=(const FileChooserScope&) = delete;
    ~FileChooserScope();

private:
    Chooser m_previous;
};

} // namespace kit
