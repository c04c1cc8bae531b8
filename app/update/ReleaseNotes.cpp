#include "update/ReleaseNotes.h"

#include "update/Limits.h"
#include "update/Links.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Treatment {
    phrase,    // opened and closed
    block,     // the same, and it ends a paragraph that is still open
    item,      // the same, and it ends an item that is still open
    paragraph, // the same as a block
    lineBreak, // <br> in its place
    blank,     // a blank in its place
    dropText,  // what it holds is not for readers
};

struct Element {
    QLatin1StringView name;
    Treatment treatment;
};

// All others lose their tags and keep their text.
constexpr std::array elements{
    Element{"a"_L1, Treatment::phrase},         Element{"b"_L1, Treatment::phrase},
    Element{"blockquote"_L1, Treatment::block}, Element{"br"_L1, Treatment::lineBreak},
    Element{"code"_L1, Treatment::phrase},      Element{"dd"_L1, Treatment::lineBreak},
    Element{"div"_L1, Treatment::lineBreak},    Element{"dt"_L1, Treatment::lineBreak},
    Element{"em"_L1, Treatment::phrase},        Element{"h1"_L1, Treatment::paragraph},
    Element{"h2"_L1, Treatment::paragraph},     Element{"h3"_L1, Treatment::paragraph},
    Element{"h4"_L1, Treatment::paragraph},     Element{"h5"_L1, Treatment::paragraph},
    Element{"h6"_L1, Treatment::paragraph},     Element{"head"_L1, Treatment::dropText},
    Element{"hr"_L1, Treatment::lineBreak},     Element{"i"_L1, Treatment::phrase},
    Element{"li"_L1, Treatment::item},          Element{"ol"_L1, Treatment::block},
    Element{"p"_L1, Treatment::paragraph},      Element{"pre"_L1, Treatment::block},
    Element{"script"_L1, Treatment::dropText},  Element{"strong"_L1, Treatment::phrase},
    Element{"style"_L1, Treatment::dropText},   Element{"svg"_L1, Treatment::dropText},
    Element{"td"_L1, Treatment::blank},         Element{"template"_L1, Treatment::dropText},
    Element{"th"_L1, Treatment::blank},         Element{"title"_L1, Treatment::dropText},
    Element{"tr"_L1, Treatment::lineBreak},     Element{"tt"_L1, Treatment::phrase},
    Element{"u"_L1, Treatment::phrase},         Element{"ul"_L1, Treatment::block},
};

const Element* elementNamed(const QString& name)
{
    const auto* const found = std::ranges::find_if(
        elements, [&](const Element& element) { return element.name == name; });
    return found == elements.end() ? nullptr : found;
}

bool isParagraph(const QString& name)
{
    return elementNamed(name)->treatment == Treatment::paragraph;
}

class Reducer {
public:
    explicit Reducer(const QString& html) : m_html(html) {}

    QString reduce()
    {
        while (m_at < m_html.size()) {
            const qsizetype tag = m_html.indexOf(u'<', m_at);
            appendText(m_html.mid(m_at, tag < 0 ? -1 : tag - m_at));
            if (tag < 0) break;
            m_at = tag;
            readMarkup();
        }
        closeDownTo(0);
        return m_result;
    }

private:
    void appendText(QStringView text)
    {
        if (m_dropped.isEmpty()) m_result += text;
    }

    void readMarkup()
    {
        const QStringView rest = QStringView(m_html).mid(m_at);
        if (rest.startsWith("<!--"_L1)) {
            skipBehind("-->"_L1);
        } else if (rest.startsWith("<!"_L1) || rest.startsWith("<?"_L1)) {
            skipBehind(">"_L1);
        } else if (rest.startsWith("</"_L1)) {
            m_at += 2;
            const QString name = readName();
            skipBehind(">"_L1);
            closeElement(name);
        } else if (rest.size() > 1 && rest[1].isLetter()) {
            m_at += 1;
            readStartTag();
        } else {
            appendText(u"&lt;");
            m_at += 1;
        }
    }

    void skipBehind(QLatin1StringView end)
    {
        const qsizetype found = m_html.indexOf(end, m_at);
        m_at = found < 0 ? m_html.size() : found + end.size();
    }

    QString readName()
    {
        const qsizetype begin = m_at;
        while (m_at < m_html.size() && m_html[m_at].isLetterOrNumber())
            ++m_at;
        return m_html.mid(begin, m_at - begin).toLower();
    }

    void skipBlanks()
    {
        while (m_at < m_html.size() && (m_html[m_at].isSpace() || m_html[m_at] == u'/'))
            ++m_at;
    }

    QString readValue()
    {
        skipBlanks();
        if (m_at >= m_html.size() || m_html[m_at] != u'=') return {};
        ++m_at;
        while (m_at < m_html.size() && m_html[m_at].isSpace())
            ++m_at;
        if (m_at >= m_html.size()) return {};
        const QChar quote = m_html[m_at];
        const bool quoted = quote == u'"' || quote == u'\'';
        const qsizetype begin = quoted ? ++m_at : m_at;
        while (m_at < m_html.size() &&
               (quoted ? m_html[m_at] != quote : !m_html[m_at].isSpace() && m_html[m_at] != u'>'))
            ++m_at;
        const qsizetype end = m_at;
        if (quoted && m_at < m_html.size()) ++m_at;
        return m_html.mid(begin, end - begin);
    }

    void readStartTag()
    {
        const QString name = readName();
        QString address;
        for (skipBlanks(); m_at < m_html.size() && m_html[m_at] != u'>'; skipBlanks()) {
            const qsizetype begin = m_at;
            const QString attribute = readName();
            const QString value = readValue();
            if (attribute == "href"_L1) address = value;
            if (m_at == begin) ++m_at; // no attribute at all
        }
        if (m_at < m_html.size()) ++m_at;
        openElement(name, address);
    }

    void openElement(const QString& name, const QString& address)
    {
        const Element* const element = elementNamed(name);
        if (!m_dropped.isEmpty() || element == nullptr) return;
        switch (element->treatment) {
        case Treatment::phrase:
            return push(name, address);
        case Treatment::item:
            closeParagraph();
            if (!m_open.isEmpty() && m_open.last() == name) closeDownTo(m_open.size() - 1);
            return push(name, {});
        case Treatment::block:
        case Treatment::paragraph:
            closeParagraph();
            return push(name, {});
        case Treatment::lineBreak:
            m_result += u"<br>";
            return;
        case Treatment::blank:
            m_result += u' ';
            return;
        case Treatment::dropText:
            m_dropped = name;
            return;
        }
    }

    void push(const QString& name, const QString& address)
    {
        if (static_cast<std::size_t>(m_open.size()) >= FeedLimits::notesDepth) return;
        if (name == "a"_L1) {
            QString plain = address;
            const auto page = pageAddress(plain.replace("&amp;"_L1, "&"_L1).toStdString());
            if (!page) return;
            m_result += u"<a href=\"%1\">"_s.arg(QString::fromStdString(*page).toHtmlEscaped());
        } else {
            m_result += u"<%1>"_s.arg(name);
        }
        m_open.push_back(name);
    }

    void closeElement(const QString& name)
    {
        if (!m_dropped.isEmpty()) {
            if (m_dropped == name) m_dropped.clear();
            return;
        }
        const qsizetype open = m_open.lastIndexOf(name);
        if (open >= 0) closeDownTo(open);
    }

    void closeParagraph()
    {
        for (qsizetype open = m_open.size() - 1; open >= 0; --open) {
            if (isParagraph(m_open[open])) return closeDownTo(open);
            if (elementNamed(m_open[open])->treatment != Treatment::phrase) return;
        }
    }

    void closeDownTo(qsizetype count)
    {
        while (m_open.size() > count)
            m_result += u"</%1>"_s.arg(m_open.takeLast());
    }

    QString m_html;
    qsizetype m_at{};
    QStringList m_open;
    QString m_dropped; // the element whose text is left out; empty when there is none
    QString m_result;
};

QString cut(const QString& text)
{
    const auto most = static_cast<qsizetype>(FeedLimits::notesCharacters);
    return text.size() <= most ? text : text.left(most) + u'…';
}

} // namespace

QString simpleHtml(const QString& html)
{
    // Nobody writes notes of more than a paragraph in HTML without a single tag.
    if (!html.contains(u'<')) return htmlOfPlainText(html);
    return Reducer(cut(html)).reduce();
}

QString htmlOfPlainText(const QString& text)
{
    QString html = cut(text).toHtmlEscaped();
    return html.replace("\r\n"_L1, "\n"_L1).replace(u'\n', "<br>"_L1);
}

} // namespace quillmark
