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

std::optional<std::string> pathOfFileURL(std::string_view url)
{
    constexpr std::string_view scheme = "file:";
    constexpr std::string_view authority = "//";
    constexpr std::string_view thisComputer = "localhost";
    const auto hasScheme = [&] {
        return url.size() > scheme.size() &&
               qstrnicmp(url.data(), scheme.data(), scheme.size()) == 0;
    };
    if (!hasScheme()) return std::nullopt;
    std::string_view rest = url.substr(scheme.size());
    if (rest.starts_with(authority)) {
        rest.remove_prefix(authority.size());
        if (rest.starts_with(thisComputer)) rest.remove_prefix(thisComputer.size());
    }
    if (!rest.starts_with('/')) return std::nullopt;
    rest = rest.substr(0, rest.find_first_of("?#"));
    std::string path = QByteArray::fromPercentEncoding(bytes(rest)).toStdString();
    if (path.find('\0') != std::string::npos) return std::nullopt;
    return path;
}

} // namespace quillmark
