// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Icons.h"

#include <QFile>

// Outside any namespace, as Qt's macro wants it: the resource lies in a static library, whose
// objects the linker takes only when something refers to them.
static void registerIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace kit {

namespace {

QIcon iconOfFile(const QString& name)
{
    static const bool isRegistered = (registerIcons(), true);
    Q_UNUSED(isRegistered)
    const QString path = QStringLiteral(":/tematica/icons/") + name + QStringLiteral(".svg");
    return QFile::exists(path) ? QIcon(path) : QIcon();
}

} // namespace

QIcon icon(int number)
{
    return iconOfFile(QString::number(number));
}

QIcon icon(const char* name)
{
    return iconOfFile(QLatin1String(name));
}

} // namespace kit
