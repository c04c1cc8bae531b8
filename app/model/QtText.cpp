#include "model/QtText.h"

#include "text/Encoding.h"

#include <QByteArray>

namespace quillmark {
namespace {

constexpr std::string_view fileScheme = "file://";

QByteArray bytes(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

} // namespace

QString qtText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string stdText(const QString& text)
{
    return text.toStdString();
}

QString keptPath(std::string_view path)
{
    const bool isText = repairedUtf8(path) == path;
    return qtText(isText ? std::string(path) : fileURL(path));
}

std::string pathFromKept(const QString& kept)
{
    const std::string text = stdText(kept);
    if (!text.starts_with(fileScheme)) return text;
    return QByteArray::fromPercentEncoding(bytes(text).mid(fileScheme.size())).toStdString();
}

std::string fileURL(std::string_view path)
{
    return std::string(fileScheme) + bytes(path).toPercentEncoding("/").toStdString();
}

} // namespace quillmark
