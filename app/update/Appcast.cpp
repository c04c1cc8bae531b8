#include "update/Appcast.h"

#include "text/Encoding.h"
#include "text/Trim.h"
#include "update/FeedMarkup.h"
#include "update/Limits.h"
#include "update/UpdateVersion.h"

#include <QDateTime>
#include <QString>
#include <QSysInfo>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <utility>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

// A name, never requested: what tells the elements for updates from all others.
constexpr auto updateNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle"_L1;

std::optional<std::string> textOrAbsent(QStringView text)
{
    return trimmedOrAbsent(text.toString().toStdString());
}

std::optional<std::string> versionOrAbsent(QStringView text)
{
    std::optional<std::string> version = textOrAbsent(text);
    if (version && version->size() > FeedLimits::versionCharacters) version.reset();
    return version;
}

/// How well a text in that language serves readers of English.
int fitness(QStringView language)
{
    if (language.isEmpty()) return 1;
    return language.startsWith("en"_L1, Qt::CaseInsensitive) ? 2 : 0;
}

bool isFor(QStringView systems, std::string_view system)
{
    const std::string name = systems.toString().toStdString();
    return name.empty() || name == system ||
           (system.starts_with(name) && system.substr(name.size()).starts_with('-'));
}

class ItemReader {
public:
    ItemReader(QXmlStreamReader& xml, std::string_view system) : m_xml(xml), m_system(system) {}

    /// Reads to the item's end; absent when it is not for us.
    std::optional<AppcastItem> read()
    {
        while (m_xml.readNextStartElement()) {
            if (m_xml.namespaceUri().isEmpty())
                readPlain();
            else if (m_xml.namespaceUri() == updateNamespace)
                readUpdate();
            else
                m_xml.skipCurrentElement();
        }
        if (!m_version) m_version = m_enclosedVersion;
        if (!m_item.shortVersion) m_item.shortVersion = m_enclosedShortVersion;
        const bool otherSystems = m_hasEnclosure && !m_fits;
        if (!m_version || m_hasChannel || otherSystems) return std::nullopt;
        m_item.version = *m_version;
        return m_item;
    }

private:
    void readPlain()
    {
        const QString name = m_xml.name().toString();
        if (name == "title"_L1)
            m_item.title = text();
        else if (name == "link"_L1)
            m_item.link = text();
        else if (name == "pubDate"_L1)
            readDate();
        else if (name == "description"_L1)
            readDescription();
        else if (name == "enclosure"_L1)
            readEnclosure();
        else
            m_xml.skipCurrentElement();
    }

    void readUpdate()
    {
        const QString name = m_xml.name().toString();
        if (name == "version"_L1)
            m_version = versionOrAbsent(content());
        else if (name == "shortVersionString"_L1)
            m_item.shortVersion = versionOrAbsent(content());
        else if (name == "releaseNotesLink"_L1)
            readNotesLink();
        else if (name == "channel"_L1)
            m_hasChannel = text().has_value();
        else if (name == "criticalUpdate"_L1)
            readCritical();
        else
            m_xml.skipCurrentElement();
    }

    QString content() { return m_xml.readElementText(QXmlStreamReader::IncludeChildElements); }
    std::optional<std::string> text() { return textOrAbsent(content()); }

    void readDate()
    {
        QString text = content().trimmed();
        // Qt knows zones only as offsets.
        if (text.endsWith(" GMT"_L1)) text.replace(text.size() - 3, 3, u"+0000"_s);
        const QDateTime date = QDateTime::fromString(text, Qt::RFC2822Date);
        if (date.isValid())
            m_item.published =
                std::chrono::sys_seconds(std::chrono::seconds(date.toSecsSinceEpoch()));
    }

    void readDescription()
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        const QStringView format = attributes.value(updateNamespace, "descriptionFormat"_L1);
        std::optional<std::string> notes = text();
        if (!takes(m_descriptionFitness, attributes) || !notes) return;
        m_item.description = std::move(notes);
        m_item.notesFormat = format.isEmpty() || format == "html"_L1
                                 ? AppcastItem::NotesFormat::html
                                 : AppcastItem::NotesFormat::plainText;
    }

    void readNotesLink()
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        std::optional<std::string> link = text();
        if (takes(m_notesLinkFitness, attributes) && link) m_item.releaseNotesLink = link;
    }

    /// Whether an element with these attributes serves better than the one before.
    static bool takes(int& fitnessBefore, const QXmlStreamAttributes& attributes)
    {
        const int now = fitness(attributes.value("xml:lang"_L1));
        if (now <= fitnessBefore) return false;
        fitnessBefore = now;
        return true;
    }

    void readCritical()
    {
        m_item.critical = true;
        m_item.criticalBelow =
            versionOrAbsent(m_xml.attributes().value(updateNamespace, "version"_L1));
        m_xml.skipCurrentElement();
    }

    void readEnclosure()
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        m_hasEnclosure = true;
        if (!m_fits && isFor(attributes.value(updateNamespace, "os"_L1), m_system)) {
            m_fits = true;
            m_enclosedVersion = versionOrAbsent(attributes.value(updateNamespace, "version"_L1));
            m_enclosedShortVersion =
                versionOrAbsent(attributes.value(updateNamespace, "shortVersionString"_L1));
        }
        m_xml.skipCurrentElement();
    }

    QXmlStreamReader& m_xml;
    std::string_view m_system;
    AppcastItem m_item;
    std::optional<std::string> m_version;
    bool m_hasChannel{};
    bool m_hasEnclosure{};
    bool m_fits{}; // an enclosure is for this system
    std::optional<std::string> m_enclosedVersion;
    std::optional<std::string> m_enclosedShortVersion;
    int m_descriptionFitness{-1};
    int m_notesLinkFitness{-1};
};

/// Reads to the channel's end.
void readChannel(QXmlStreamReader& xml, std::string_view system, Appcast& appcast)
{
    std::size_t items = 0;
    while (xml.readNextStartElement()) {
        if (!xml.namespaceUri().isEmpty()) {
            xml.skipCurrentElement();
        } else if (xml.name() == "link"_L1) {
            appcast.link =
                textOrAbsent(xml.readElementText(QXmlStreamReader::IncludeChildElements));
        } else if (xml.name() == "item"_L1) {
            if (++items > FeedLimits::feedItems) {
                xml.raiseError(u"it has too many items"_s);
                return;
            }
            if (auto item = ItemReader(xml, system).read())
                appcast.items.push_back(*std::move(item));
        } else {
            xml.skipCurrentElement();
        }
    }
}

bool startsElement(QXmlStreamReader& xml, QLatin1StringView name)
{
    return xml.readNextStartElement() && xml.namespaceUri().isEmpty() && xml.name() == name;
}

} // namespace

bool AppcastItem::isCriticalFor(std::string_view installed) const
{
    return critical && (!criticalBelow || compareVersions(installed, *criticalBelow) < 0);
}

const AppcastItem* Appcast::newest() const
{
    const auto found =
        std::ranges::max_element(items, [](const AppcastItem& left, const AppcastItem& right) {
            return compareVersions(left.version, right.version) < 0;
        });
    return found == items.end() ? nullptr : &*found;
}

std::variant<Appcast, AppcastDamage> parseAppcast(const QByteArray& bytes, std::string_view system)
{
    const std::string_view raw(bytes.data(), static_cast<std::size_t>(bytes.size()));
    if (raw.size() > FeedLimits::feedBytes) return AppcastDamage{"it is too large"};
    // The reader is to see the very characters that were looked at first: another encoding could
    // hide markup from that look.
    if (repairedUtf8(raw) != raw) return AppcastDamage{"it is not in UTF-8"};
    const QString text = QString::fromUtf8(bytes);
    if (const QString reason = reasonNotToParse(text); !reason.isEmpty())
        return AppcastDamage{reason.toStdString()};

    QXmlStreamReader xml(text);
    Appcast appcast;
    if (startsElement(xml, "rss"_L1) && startsElement(xml, "channel"_L1)) {
        readChannel(xml, system, appcast);
        // What follows has to be sound too: a list that was cut is no list.
        while (!xml.atEnd())
            xml.readNext();
    } else if (!xml.hasError()) {
        return AppcastDamage{"it is not a list of updates"};
    }
    // Qt's own words for an error may hold any amount of the list.
    if (xml.error() == QXmlStreamReader::CustomError)
        return AppcastDamage{xml.errorString().toStdString()};
    if (xml.hasError())
        return AppcastDamage{"it is damaged in line " + std::to_string(xml.lineNumber())};
    return appcast;
}

std::string runningSystem()
{
    using Names = std::pair<std::string_view, std::string_view>;
    // Qt's names on the left, those of the lists on the right.
    constexpr std::array kernels{Names{"darwin", "macos"}, Names{"winnt", "windows"}};
    constexpr std::array processors{Names{"x86_64", "x64"}, Names{"i386", "x86"}};
    const auto listed = [](const auto& names, const QString& name) {
        const std::string own = name.toStdString();
        const auto* const found = std::ranges::find(names, own, &Names::first);
        return found == names.end() ? own : std::string(found->second);
    };
    return listed(kernels, QSysInfo::kernelType()) + '-' +
           listed(processors, QSysInfo::currentCpuArchitecture());
}

} // namespace quillmark
