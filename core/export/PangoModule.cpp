// The module that is loaded for scripts other than the report's own face can set. It is apart from
// the programs because Pango brings some twenty shared libraries, which would take longer to load
// than all the rest of starting takes.

#include "export/ScriptModule.h"
#include "fontfile/EmbeddingRights.h"
#include "fontfile/OS2Info.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <fontconfig/fontconfig.h>
#include <pango/pangofc-fontmap.h>
#include <pango/pangoft2.h>

namespace quillmark::ScriptModule {
namespace {

struct Release {
    void operator()(FcConfig* config) const { ::FcConfigDestroy(config); }
    void operator()(PangoFontDescription* description) const
    {
        ::pango_font_description_free(description);
    }
    void operator()(PangoAttrList* attributes) const { ::pango_attr_list_unref(attributes); }
    void operator()(PangoItem* item) const { ::pango_item_free(item); }
    void operator()(PangoGlyphString* glyphs) const { ::pango_glyph_string_free(glyphs); }
    void operator()(hb_blob_t* blob) const { ::hb_blob_destroy(blob); }
    void operator()(hb_face_t* face) const { ::hb_face_destroy(face); }
    void operator()(void* object) const { ::g_object_unref(object); }
};

template <class Type>
using Owned = std::unique_ptr<Type, Release>;

/// The report's own faces go by names that no installed font has, so that Pango takes them from
/// their files even where fonts of their real name are installed.
constexpr const char* regularFamily = "Quillmark Report Regular";
constexpr const char* boldFamily = "Quillmark Report Bold";

void appendEscaped(std::string& xml, std::string_view text)
{
    for (const char character : text) {
        if (character == '&')
            xml += "&amp;";
        else if (character == '<')
            xml += "&lt;";
        else
            xml += character;
    }
}

const FcChar8* bytes(const char* text)
{
    return reinterpret_cast<const FcChar8*>(text);
}

/// A Font that keeps its path.
struct Face {
    std::string path;
    int index{};

    bool operator<(const Face& other) const
    {
        return std::tie(path, index) < std::tie(other.path, other.index);
    }
};

void addFont(FcConfig* config, const Face& face, const char* family)
{
    std::string rule = R"(<fontconfig><match target="scan"><test name="file"><string>)";
    appendEscaped(rule, face.path);
    rule += R"(</string></test><edit name="family" mode="assign"><string>)";
    rule += family;
    rule += "</string></edit></match></fontconfig>";
    ::FcConfigParseAndLoadFromMemory(config, bytes(rule.c_str()), FcFalse);
    ::FcConfigAppFontAddFile(config, bytes(face.path.c_str()));
}

std::size_t position(int index)
{
    return static_cast<std::size_t>(std::max(index, 0));
}

/// The file that a pattern names; null when it names none.
const char* filePath(const FcPattern* pattern, int& index)
{
    FcChar8* path = nullptr;
    if (pattern == nullptr || ::FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch ||
        ::FcPatternGetInteger(pattern, FC_INDEX, 0, &index) != FcResultMatch)
        return nullptr;
    return reinterpret_cast<const char*>(path);
}

/// Whether a font's own bits let outlines of some of its glyphs go into a document. Those who get a
/// report get what is in it, so a font that forbids this is as good as not installed.
bool mayEmbed(hb_face_t* face)
{
    const Owned<hb_blob_t> table(::hb_face_reference_table(face, HB_TAG('O', 'S', '/', '2')));
    unsigned size = 0;
    const char* const data = ::hb_blob_get_data(table.get(), &size);
    const auto info = OS2Info::read(std::as_bytes(std::span(data, size)));
    if (!info) return true;
    const EmbeddingRights rights{info->fsType};
    return rights.level() != EmbeddingRights::Level::restricted && !rights.noSubsetting() &&
           !rights.bitmapOnly();
}

/// The files among a configuration's fonts of which some face must not be embedded.
std::vector<std::string> filesNotToEmbed(FcConfig* config)
{
    std::vector<std::string> found;
    const FcFontSet* const fonts = ::FcConfigGetFonts(config, FcSetSystem);
    if (fonts == nullptr) return found;
    for (const FcPattern* pattern : std::span(fonts->fonts, position(fonts->nfont))) {
        int index = 0;
        const char* const path = filePath(pattern, index);
        if (path == nullptr) continue;
        const Owned<hb_blob_t> file(::hb_blob_create_from_file(path));
        constexpr unsigned faceBits =
            0xFFFF; // above them, the number of a variable font's instance
        const Owned<hb_face_t> face(
            ::hb_face_create(file.get(), static_cast<unsigned>(index) & faceBits));
        if (!mayEmbed(face.get())) found.emplace_back(path);
    }
    return found;
}

void substitute(FcPattern* pattern, gpointer /*data*/)
{
    // Paper has no pixels to fit outlines to; and what is embedded is a font's default shape, which
    // the file of a variable font names only through its instances.
    ::FcPatternDel(pattern, FC_HINTING);
    ::FcPatternAddBool(pattern, FC_HINTING, FcFalse);
    ::FcPatternDel(pattern, FC_VARIABLE);
    ::FcPatternAddBool(pattern, FC_VARIABLE, FcFalse);
}

/// The unified ideographs of the basic plane: one glyph each, whatever stands beside them, but for
/// variation selectors behind them.
bool isIdeograph(gunichar character)
{
    return (character >= 0x4E00 && character <= 0x9FFF) ||
           (character >= 0x3400 && character <= 0x4DBF);
}

/// The character behind the one at `at`.
const char* after(const char* at)
{
    return at + ::g_utf8_skip[static_cast<unsigned char>(*at)];
}

double points(int pangoUnits)
{
    return static_cast<double>(pangoUnits) / PANGO_SCALE;
}

class Layout {
public:
    Layout(const Font& regular, const Font& bold)
        : m_regular{regular.path, regular.index}, m_bold{bold.path, bold.index},
          m_map(::pango_ft2_font_map_new())
    {
        auto* const map = PANGO_FC_FONT_MAP(m_map.get());
        findFonts({});
        ::pango_fc_font_map_set_default_substitute(map, &substitute, nullptr, nullptr);
        ::pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(map), 72, 72);
        m_context.reset(::pango_font_map_create_context(m_map.get()));
        ::pango_context_set_round_glyph_positions(m_context.get(), FALSE);
        ::pango_context_set_base_dir(m_context.get(), PANGO_DIRECTION_LTR);
    }

    ~Layout()
    {
        // Pango 1.50 does not let go of its configuration when a map ends.
        ::pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(m_map.get()), nullptr);
    }
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    /// Lines are broken here and not by Pango, which shapes what is left of a text again for each
    /// line: ten times as much work where words are long.
    void lines(const Request& request, const Receiver& receiver)
    {
        const auto runs = std::span(request.runs, request.runCount);
        std::string text;
        for (const Run& run : runs)
            text.append(run.text, run.size);
        Shaped shaped = shape(text, runs, request.size);
        if (!shaped.mayEmbed && !m_isSifted) {
            // Once for all of them, and only where one is wanted: it looks into every font.
            m_isSifted = true;
            findFonts(filesNotToEmbed(m_config.get()));
            shaped = shape(text, runs, request.size);
        }
        double indent = request.indent;
        for (std::size_t first = 0; first < shaped.clusters.size();) {
            const auto rest = std::span(shaped.clusters).subspan(first);
            const std::size_t count =
                lineLength(rest, request.width - indent, request.width - request.hang);
            showLine(shaped, rest.first(count), indent, receiver);
            first += count;
            indent = request.hang;
        }
    }

private:
    /// Text in one font and one direction.
    struct Item {
        bool isKnown{}; // by its font's file
        Font file{};
        unsigned level{}; // odd: from right to left
        double ascent{};
        double descent{};
    };

    enum class Break { never, character, line };

    /// Glyphs that stand for one stretch of text together.
    struct Cluster {
        std::size_t item{};
        std::size_t firstGlyph{};
        std::size_t endGlyph{};
        std::size_t start{}; // in bytes of the text
        std::size_t end{};
        double width{};
        bool isBlank{};
        Break before{Break::never}; // whether a line may end before it
    };

    using Items = std::vector<Owned<PangoItem>>;

    struct Shaped {
        std::vector<Item> items;
        Items pangoItems;                   // which keep the files' paths
        std::vector<Cluster> clusters;      // in the order of the text
        std::vector<PangoGlyphInfo> glyphs; // those of an item from left to right
        bool mayEmbed{true};                // all that is in `items`
    };

    /// Takes the system's fonts but for those in `rejected`, and the report's own.
    void findFonts(const std::vector<std::string>& rejected)
    {
        Owned<FcConfig> config(::FcInitLoadConfig());
        if (config) {
            std::string rule = "<fontconfig><selectfont><rejectfont>";
            for (const std::string& path : rejected) {
                rule += "<glob>";
                appendEscaped(rule, path);
                rule += "</glob>";
            }
            rule += "</rejectfont></selectfont></fontconfig>";
            ::FcConfigParseAndLoadFromMemory(config.get(), bytes(rule.c_str()), FcFalse);
            ::FcConfigBuildFonts(config.get());
            addFont(config.get(), m_regular, regularFamily);
            addFont(config.get(), m_bold, boldFamily);
        }
        ::pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(m_map.get()), config.get());
        m_config = std::move(config);
    }

    static Owned<PangoAttrList> fonts(std::span<const Run> runs, double size)
    {
        Owned<PangoAttrList> attributes(::pango_attr_list_new());
        std::size_t start = 0;
        for (const Run& run : runs) {
            const Owned<PangoFontDescription> font(::pango_font_description_new());
            std::string family(run.isBold ? boldFamily : regularFamily);
            family += ",monospace";
            ::pango_font_description_set_family(font.get(), family.c_str());
            ::pango_font_description_set_weight(font.get(), run.isBold ? PANGO_WEIGHT_BOLD
                                                                       : PANGO_WEIGHT_NORMAL);
            ::pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
            PangoAttribute* const attribute = ::pango_attr_font_desc_new(font.get());
            attribute->start_index = static_cast<guint>(start);
            start += run.size;
            attribute->end_index = static_cast<guint>(start);
            ::pango_attr_list_insert(attributes.get(), attribute);
        }
        return attributes;
    }

    /// Finds fonts and directions. Pango looks for a font for each character by itself, through all
    /// fonts until one has it: a third of the work for texts of many different ideographs. So
    /// stretches of those are taken out, which can be done because they turn no reading order.
    [[nodiscard]] Items itemize(const std::string& text, std::span<const Run> runs,
                                PangoAttrList* fonts) const
    {
        Items items;
        const char* const start = text.data();
        const char* pending = start; // the first one without an item
        const char* at = start;
        const char* runEnd = start;
        for (const Run& run : runs) {
            runEnd += run.size;
            while (at < runEnd) {
                const char* last = at; // of the stretch
                const char* end = at;
                while (end < runEnd && isIdeograph(::g_utf8_get_char(end)))
                    last = std::exchange(end, after(end));
                if (last > at && isLong(at, last)) {
                    appendItems(items, text, pending, at, fonts);
                    // The last one is Pango's, together with what follows it.
                    pending = appendIdeographs(items, text, at, last, fonts);
                }
                at = end < runEnd ? after(end) : runEnd;
            }
        }
        appendItems(items, text, pending, start + text.size(), fonts);
        uniteLetters(items, text);
        return items;
    }

    /// Sets a letter and the marks on it in one font. Pango looks for a font for each character by
    /// itself, and a mark that comes from another font than its letter is drawn beside it.
    static void uniteLetters(Items& items, const std::string& text)
    {
        PangoItem* before = nullptr;
        for (const auto& next : items) {
            PangoItem& item = *next;
            if (before != nullptr && before->analysis.level == item.analysis.level)
                uniteLetter(*before, item, text);
            if (item.length > 0) before = &item;
        }
        std::erase_if(items, [](const auto& item) { return item->length == 0; });
    }

    /// Where `item` starts with marks: gives those that the font of the item before it has, or has
    /// together with the letter, to that item, or else fetches the letter from there.
    static void uniteLetter(PangoItem& before, PangoItem& item, const std::string& text)
    {
        constexpr int mostMarks = 30; // as in the Stream-Safe Text Format of Unicode
        const char* mark = text.data() + item.offset;
        const char* const end = mark + item.length;
        if (!isMark(mark)) return;
        const char* letter = mark;
        int count = 0;
        do {
            if (letter == text.data() + before.offset || count > mostMarks) return;
            letter = ::g_utf8_prev_char(letter);
            ++count;
        } while (isMark(letter));
        if (::g_unichar_isspace(::g_utf8_get_char(letter)) != FALSE) return;

        while (mark < end && isMark(mark) &&
               (hasGlyph(before, ::g_utf8_get_char(mark)) ||
                hasGlyph(before, composed(letter, after(mark))))) {
            const char* const next = after(mark);
            moveBoundary(before, item, static_cast<int>(next - mark), 1);
            mark = next;
            ++count;
        }
        if (mark < end && isMark(mark) && hasGlyph(item, ::g_utf8_get_char(letter)) &&
            hasGlyph(item, ::g_utf8_get_char(mark)))
            moveBoundary(before, item, static_cast<int>(letter - mark), -count);
    }

    static bool isMark(const char* at)
    {
        return ::g_unichar_ismark(::g_utf8_get_char(at)) != FALSE;
    }

    /// The character that a letter and its marks are together; 0 when there is none.
    static hb_codepoint_t composed(const char* letter, const char* end)
    {
        hb_codepoint_t whole = ::g_utf8_get_char(letter);
        for (const char* mark = after(letter); mark < end; mark = after(mark))
            if (::hb_unicode_compose(::hb_unicode_funcs_get_default(), whole,
                                     ::g_utf8_get_char(mark), &whole) == 0)
                return 0;
        return whole;
    }

    static bool hasGlyph(const PangoItem& item, hb_codepoint_t character)
    {
        hb_codepoint_t glyph = 0;
        return character != 0 && item.analysis.font != nullptr &&
               ::hb_font_get_nominal_glyph(::pango_font_get_hb_font(item.analysis.font), character,
                                           &glyph) != 0;
    }

    /// Moves the end of one item, and so the start of the next, on or back.
    static void moveBoundary(PangoItem& before, PangoItem& item, int bytes, int characters)
    {
        before.length += bytes;
        before.num_chars += characters;
        item.offset += bytes;
        item.length -= bytes;
        item.num_chars -= characters;
    }

    /// Whether it saves time to treat so many characters by themselves.
    static bool isLong(const char* begin, const char* end)
    {
        constexpr std::ptrdiff_t leastBytes = 48; // three for each ideograph
        return end - begin >= leastBytes;
    }

    void appendItems(Items& items, const std::string& text, const char* begin, const char* end,
                     PangoAttrList* fonts) const
    {
        if (begin == end) return;
        // Each line starts at the left, whatever script it starts with.
        GList* const found = ::pango_itemize_with_base_dir(
            m_context.get(), PANGO_DIRECTION_LTR, text.data(),
            static_cast<int>(begin - text.data()), static_cast<int>(end - begin), fonts, nullptr);
        for (const GList* node = found; node != nullptr; node = node->next)
            items.emplace_back(static_cast<PangoItem*>(node->data));
        ::g_list_free(found);
    }

    /// Sets ideographs in the font that Pango finds for the first of them, and where that has not
    /// all, in the one for the first that it has not. Returns where this was not worth going on.
    const char* appendIdeographs(Items& items, const std::string& text, const char* begin,
                                 const char* end, PangoAttrList* fonts) const
    {
        while (isLong(begin, end)) {
            const char* next = after(begin);
            appendItems(items, text, begin, next, fonts);
            PangoItem& item = *items.back();
            while (next < end && hasGlyph(item, ::g_utf8_get_char(next))) {
                next = after(next);
                ++item.num_chars;
            }
            item.length = static_cast<int>(next - begin);
            if (!isLong(begin, std::exchange(begin, next))) break;
        }
        return begin;
    }

    [[nodiscard]] Shaped shape(const std::string& text, std::span<const Run> runs, double fontSize)
    {
        const int size = static_cast<int>(text.size());
        Shaped shaped;
        shaped.pangoItems = itemize(text, runs, fonts(runs, fontSize).get());
        std::vector<PangoLogAttr> breaks(
            position(static_cast<int>(::g_utf8_strlen(text.data(), size))) + 1);
        ::pango_get_log_attrs(text.data(), size, -1, ::pango_language_get_default(), breaks.data(),
                              static_cast<int>(breaks.size()));
        const Owned<PangoGlyphString> glyphs(::pango_glyph_string_new());
        std::size_t character = 0;
        for (const auto& item : shaped.pangoItems) {
            ::pango_shape_full(text.data() + item->offset, item->length, text.data(), size,
                               &item->analysis, glyphs.get());
            addItem(shaped, item.get(), glyphs.get());
            addClusters(shaped, text, item.get(), glyphs.get(),
                        std::span(breaks).subspan(character));
            character += position(item->num_chars);
        }
        return shaped;
    }

    void addItem(Shaped& shaped, const PangoItem* item, const PangoGlyphString* glyphs)
    {
        Item& added = shaped.items.emplace_back();
        added.isKnown = findFile(item->analysis.font, added.file);
        if (added.isKnown && !mayEmbed(item->analysis.font, added.file)) {
            added.isKnown = false;
            shaped.mayEmbed = false;
        }
        added.level = item->analysis.level;
        if (glyphs->num_glyphs == 0) return;
        PangoRectangle logical{};
        ::pango_font_get_glyph_extents(item->analysis.font, glyphs->glyphs[0].glyph, nullptr,
                                       &logical);
        added.ascent = points(-logical.y);
        added.descent = points(logical.y + logical.height);
    }

    /// `breaks` are those of the item's characters, and of what follows.
    static void addClusters(Shaped& shaped, const std::string& text, PangoItem* item,
                            PangoGlyphString* glyphs, std::span<const PangoLogAttr> breaks)
    {
        const std::size_t before = shaped.glyphs.size();
        const auto own = std::span(glyphs->glyphs, position(glyphs->num_glyphs));
        shaped.glyphs.insert(shaped.glyphs.end(), own.begin(), own.end());
        PangoGlyphItem run{item, glyphs, 0, 0, 0};
        PangoGlyphItemIter iterator{};
        auto more = ::pango_glyph_item_iter_init_start(&iterator, &run, text.c_str());
        for (; more != FALSE; more = ::pango_glyph_item_iter_next_cluster(&iterator)) {
            // From right to left, the glyphs of a cluster are counted downwards.
            const bool isForward = iterator.start_glyph < iterator.end_glyph;
            const int first = isForward ? iterator.start_glyph : iterator.end_glyph + 1;
            const int end = isForward ? iterator.end_glyph : iterator.start_glyph + 1;
            Cluster added;
            added.item = shaped.items.size() - 1;
            added.firstGlyph = before + position(first);
            added.endGlyph = before + position(end);
            added.start = position(iterator.start_index);
            added.end = position(iterator.end_index);
            for (const PangoGlyphInfo& glyph : own.subspan(position(first), position(end - first)))
                added.width += points(glyph.geometry.width);
            const PangoLogAttr& attributes = breaks[position(iterator.start_char)];
            added.isBlank = attributes.is_white != 0;
            if (attributes.is_line_break != 0)
                added.before = Break::line;
            else if (attributes.is_char_break != 0)
                added.before = Break::character;
            if (attributes.is_cursor_position != 0 || !join(shaped.clusters, added))
                shaped.clusters.push_back(added);
        }
    }

    /// Joins what belongs to the character before it, such as a vowel sign, with that character, so
    /// that both are found as one text wherever the sign stands. False when nothing, or too much,
    /// is there to join it with.
    static bool join(std::vector<Cluster>& clusters, const Cluster& sign)
    {
        constexpr std::size_t longest = 255; // bytes; strings may have endless marks on one letter
        if (clusters.empty()) return false;
        Cluster& base = clusters.back();
        if (base.item != sign.item || base.isBlank || sign.end - base.start > longest) return false;
        if (base.endGlyph == sign.firstGlyph)
            base.endGlyph = sign.endGlyph;
        else if (base.firstGlyph == sign.endGlyph) // from right to left
            base.firstGlyph = sign.firstGlyph;
        else
            return false;
        base.end = sign.end;
        base.width += sign.width;
        return true;
    }

    /// How many clusters go on a line that has `width` for them, at least one. A word goes to the
    /// next line, which has `nextWidth`, if it fits there as a whole; else it is broken.
    static std::size_t lineLength(std::span<const Cluster> clusters, double width, double nextWidth)
    {
        constexpr double unseen = 0.01; // points, so that rounding breaks no line
        std::size_t wordStart = 0;
        std::size_t lastCharacter = 0;
        double used = 0;
        double wordWidth = 0;
        std::size_t at = 0;
        for (; at < clusters.size(); ++at) {
            const Cluster& cluster = clusters[at];
            if (cluster.before != Break::never) lastCharacter = at;
            if (cluster.before == Break::line) {
                wordStart = at;
                wordWidth = 0;
            }
            if (!cluster.isBlank && used + cluster.width > width + unseen) break;
            used += cluster.width;
            wordWidth += cluster.width;
        }
        if (at == clusters.size()) return at;
        for (std::size_t end = at;
             wordWidth <= nextWidth + unseen && end < clusters.size() && !clusters[end].isBlank &&
             (end == at || clusters[end].before != Break::line);
             ++end)
            wordWidth += clusters[end].width;
        if (wordStart > 0 && wordWidth <= nextWidth + unseen) return wordStart;
        return std::max<std::size_t>({lastCharacter > 0 ? lastCharacter : at, 1});
    }

    /// Blanks at a line's end, which is what they stand for, are left out.
    static void showLine(const Shaped& shaped, std::span<const Cluster> clusters, double x,
                         const Receiver& receiver)
    {
        std::vector<Cluster> line(clusters.begin(), clusters.end());
        const bool isLast =
            clusters.data() + clusters.size() == shaped.clusters.data() + shaped.clusters.size();
        while (!isLast && line.size() > 1 && line.back().isBlank)
            line.pop_back();
        double ascent = 0;
        double descent = 0;
        for (const Cluster& cluster : line) {
            ascent = std::max(ascent, shaped.items[cluster.item].ascent);
            descent = std::max(descent, shaped.items[cluster.item].descent);
        }
        receiver.line(receiver.object, ascent, descent);
        orderVisually(shaped, line);
        for (const Cluster& cluster : line) {
            showCluster(shaped, cluster, x, receiver);
            x += cluster.width;
        }
    }

    /// From the order of reading to that from left to right: what has a level, or a higher one, is
    /// turned round, from the highest level downwards (Unicode Standard Annex 9, rule L2).
    static void orderVisually(const Shaped& shaped, std::span<Cluster> line)
    {
        const auto level = [&shaped](const Cluster& cluster) {
            return shaped.items[cluster.item].level;
        };
        unsigned highest = 0;
        for (const Cluster& cluster : line)
            highest = std::max(highest, level(cluster));
        for (unsigned turned = highest; turned > 0; --turned) {
            const auto isTurned = [&](const Cluster& cluster) { return level(cluster) >= turned; };
            for (auto start = line.begin(); start != line.end();) {
                start = std::find_if(start, line.end(), isTurned);
                const auto end = std::find_if_not(start, line.end(), isTurned);
                std::reverse(start, end);
                start = end;
            }
        }
    }

    static void showCluster(const Shaped& shaped, const Cluster& cluster, double x,
                            const Receiver& receiver)
    {
        const auto glyphs = std::span(shaped.glyphs)
                                .subspan(cluster.firstGlyph, cluster.endGlyph - cluster.firstGlyph);
        const Item& item = shaped.items[cluster.item];
        const bool isKnown =
            item.isKnown && std::ranges::none_of(glyphs, [](const PangoGlyphInfo& info) {
                return (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0;
            });
        receiver.cluster(receiver.object, isKnown ? &item.file : nullptr, cluster.start,
                         cluster.end, x, cluster.width);
        for (const PangoGlyphInfo& info : glyphs) {
            if (info.glyph != PANGO_GLYPH_EMPTY)
                receiver.glyph(receiver.object, isKnown ? info.glyph : 0,
                               x + points(info.geometry.x_offset), -points(info.geometry.y_offset));
            x += points(info.geometry.width);
        }
    }

    static bool findFile(PangoFont* font, Font& file)
    {
        if (font == nullptr) return false;
        file.path = filePath(::pango_fc_font_get_pattern(PANGO_FC_FONT(font)), file.index);
        return file.path != nullptr;
    }

    bool mayEmbed(PangoFont* font, const Font& file)
    {
        const auto [known, isNew] = m_mayEmbed.try_emplace(Face{file.path, file.index});
        if (isNew)
            known->second =
                ScriptModule::mayEmbed(::hb_font_get_face(::pango_font_get_hb_font(font)));
        return known->second;
    }

    Face m_regular;
    Face m_bold;
    Owned<FcConfig> m_config;
    Owned<PangoFontMap> m_map;
    Owned<PangoContext> m_context;
    std::map<Face, bool> m_mayEmbed;
    bool m_isSifted{}; // of the fonts that must not be embedded
};

void* create(const Font* regular, const Font* bold)
{
    return new Layout(*regular, *bold);
}

void destroy(void* layout)
{
    const std::unique_ptr<Layout> released(static_cast<Layout*>(layout));
}

void lines(void* layout, const Request* request, const Receiver* receiver)
{
    static_cast<Layout*>(layout)->lines(*request, *receiver);
}

constexpr Functions functions{&create, &destroy, &lines};

} // namespace
} // namespace quillmark::ScriptModule

extern "C" __attribute__((visibility("default"))) const quillmark::ScriptModule::Functions*
quillmarkScripts()
{
    return &quillmark::ScriptModule::functions;
}
