// Seeds for the harness of app/update.

#include "Seeds.h"

#include <string>

namespace quillmark::fuzz {

void writeUpdateSeeds()
{
    const auto write = [](std::string_view name, std::string_view text) {
        writeSeed("appcast", name, std::as_bytes(std::span(text)));
    };
    const std::string whole = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>
<title>Updates</title><link>https://example.org/</link><item><title>Version 1.3</title>
<link>https://example.org/1.3</link><pubDate>Sat, 14 Mar 2026 09:26:53 +0100</pubDate>
<sparkle:version>1.3b2</sparkle:version><sparkle:channel/><sparkle:criticalUpdate
sparkle:version="1.1"/><description xml:lang="en" sparkle:descriptionFormat="html"><![CDATA[<h2>New
</h2><ul><li>One<li><a href="https://example.org/?a&amp;b">Two</a></ul><img src=x><script>x</script>
]]></description><sparkle:releaseNotesLink>https://example.org/n</sparkle:releaseNotesLink>
<enclosure url="https://example.org/q" sparkle:os="linux" sparkle:version="1.3"
sparkle:shortVersionString="1.3" length="1" type="x"/></item><item><sparkle:version>&#x31;.2
</sparkle:version></item></channel></rss>
<!-- sparkle-signatures:
edSignature: AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA==
length: 10
-->
)";
    write("whole", whole);
    write("truncated", std::string_view(whole).substr(0, whole.size() / 2));
    write("empty", "<rss version=\"2.0\"><channel/></rss>");
    write("document-type", "<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel>&a;</channel></rss>");
    write("ill-formed", "<rss><channel><title>\xED\xA0\x80</title></channel></rss>");
}

} // namespace quillmark::fuzz
