// A list of updates: what is read of it can be compared and shown.

#include "Harness.h"

#include "update/Appcast.h"
#include "update/FeedSignature.h"
#include "update/ReleaseNotes.h"
#include "update/UpdateVersion.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QByteArray key = QByteArray(32, 'k').toBase64();
    fuzz::expect(!signedPart(bytes, key)); // nobody has the secret key

    const auto parsed = parseAppcast(bytes, "linux-x64");
    if (const auto* damage = std::get_if<AppcastDamage>(&parsed)) {
        fuzz::expectText(std::string_view(damage->reason));
        return 0;
    }
    const auto& appcast = std::get<Appcast>(parsed);
    for (const AppcastItem& item : appcast.items) {
        fuzz::expectText(std::string_view(item.version));
        fuzz::expectText(item.shortVersion);
        fuzz::expectText(item.title);
        fuzz::expectText(item.link);
        fuzz::expectText(item.description);
        fuzz::expect(compareVersions(item.version, appcast.newest()->version) <= 0);
        const QString notes = simpleHtml(QString::fromStdString(item.description.value_or("")));
        fuzz::expect(!notes.contains(QStringLiteral("<img")) &&
                     !notes.contains(QStringLiteral("<script")));
    }
    return 0;
}
