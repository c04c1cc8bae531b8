#include "update/FeedMarkup.h"

#include "update/Limits.h"

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What lies between `begin` and the first `end` behind it is skipped whole.
struct Skipped {
    QLatin1StringView begin;
    QLatin1StringView end;
};

constexpr Skipped skippedParts[] = {
    {"<!--"_L1, "-->"_L1},
    {"<![CDATA["_L1, "]]>"_L1},
    {"<?"_L1, "?>"_L1},
    {"</"_L1, ">"_L1},
};

struct Tag {
    std::size_t attributes{};
    bool isEmpty{}; // ends itself, as in <a/>
    qsizetype end{};
};

Tag readTag(QStringView xml, qsizetype at)
{
    Tag tag;
    QChar quote;
    for (; at < xml.size(); ++at) {
        const QChar character = xml[at];
        if (!quote.isNull()) {
            if (character == quote) quote = {};
        } else if (character == u'"' || character == u'\'') {
            quote = character;
        } else if (character == u'=') {
            ++tag.attributes;
        } else if (character == u'>') {
            tag.isEmpty = xml[at - 1] == u'/';
            break;
        }
    }
    tag.end = at;
    return tag;
}

} // namespace

QString reasonNotToParse(const QString& xml)
{
    const QStringView text(xml);
    std::size_t depth = 0;
    for (qsizetype at = text.indexOf(u'<'); at >= 0; at = text.indexOf(u'<', at)) {
        const QStringView rest = text.mid(at);
        const auto* const skipped = std::ranges::find_if(
            skippedParts, [&](const Skipped& part) { return rest.startsWith(part.begin); });
        if (skipped != std::ranges::end(skippedParts)) {
            if (skipped->begin == "</"_L1 && depth > 0) --depth;
            at = text.indexOf(skipped->end, at + skipped->begin.size());
            if (at < 0) return {};
            continue;
        }
        if (rest.startsWith("<!"_L1)) return u"it has a document type"_s;
        const Tag tag = readTag(text, at + 1);
        if (tag.attributes > FeedLimits::feedAttributes)
            return u"an element has too many attributes"_s;
        if (!tag.isEmpty && ++depth > FeedLimits::feedDepth)
            return u"too many elements are inside one another"_s;
        at = tag.end;
    }
    return {};
}

} // namespace quillmark
