// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/texts/TextLoader.h"

#include "kit/texts/QtText.h"

#include "host/base/Numbers.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

// Outside any namespace, as the macro demands. Needed where the texts are read while the library is
// still being loaded (the order of its static objects is open) and in static builds.
static void registerTexts()
{
    Q_INIT_RESOURCE(texts);
}

namespace kit {

namespace {

ResourceHandle installed = nullptr;

std::string ownJson()
{
    registerTexts();
    QFile file(QStringLiteral(":/tematica/texts/it.json"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

} // namespace

const TextResource& TextResource::own()
{
    static const TextResource resource(ownJson());
    return resource;
}

TextResource::TextResource(std::string_view json)
{
    const QByteArray bytes(json.data(), static_cast<qsizetype>(json.size()));
    const QJsonObject texts = QJsonDocument::fromJson(bytes).object();
    for (auto it = texts.begin(); it != texts.end(); ++it)
        m_texts.emplace(
            orv_atoi(it.key().toUtf8().constData()), it.value().toString().toStdString());
}

std::string_view TextResource::bytes(int id) const
{
    const auto found = m_texts.find(id);
    return found == m_texts.end() ? std::string_view() : std::string_view(found->second);
}

ResourceHandle currentResource()
{
    return installed ? installed : &TextResource::own();
}

void setCurrentResource(ResourceHandle handle)
{
    installed = handle;
}

orv::String textBytes(int id)
{
    return orv::String(currentResource()->bytes(id));
}

QString text(int id)
{
    return toQt(textBytes(id));
}

QString text(int id, const orv::String& argument)
{
    return toQt(withArgument(textBytes(id), argument));
}

orv::String withArgument(const orv::String& pattern, const orv::String& argument)
{
    std::string result = pattern.Bytes();
    const auto position = result.find("%s");
    if (position != std::string::npos)
        result.replace(position, 2, argument.Bytes());
    return orv::String(result);
}

} // namespace kit
