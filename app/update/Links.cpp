#include "update/Links.h"

#include "text/Trim.h"
#include "text/WebLink.h"

#include <QString>
#include <QUrl>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

bool isLoopback(std::string_view host)
{
    if (host == "localhost" || host == "::1") return true;
    // Not a name such as 127.example.com.
    return host.starts_with("127.") &&
           host.find_first_not_of("0123456789.") == std::string_view::npos;
}

std::optional<std::string> pageAddress(std::string_view text)
{
    std::optional<std::string> link = webLink(trimmed(text));
    if (!link) return std::nullopt;
    const QUrl url(QString::fromStdString(*link), QUrl::StrictMode);
    if (url.scheme() == "https"_L1) return link;
    if (url.scheme() == "http"_L1 && isLoopback(url.host().toStdString())) return link;
    return std::nullopt;
}

} // namespace quillmark
