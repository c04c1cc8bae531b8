// The module that is loaded for scripts other than the report's own face can set. It is apart from
// the programs because Pango brings some twenty shared libraries, which would take longer to load
// than all the rest of starting takes.

#include "export/ScriptModule.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
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
    void operator()(PangoLayoutIter* iterator) const { ::pango_layout_iter_free(iterator); }
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

void addFont(FcConfig* config, const Font& file, const char* family)
{
    std::string rule = "<fontconfig><match target=\"scan\"><test name=\"file\"><string>";
    appendEscaped(rule, file.path);
    rule += "</string></test><edit name=\"family\" mode=\"assign\"><string>";
    rule += family;
    rule += "</string></edit></match></fontconfig>";
    const auto bytes = [](const char* text) { return reinterpret_cast<const FcChar8*>(text); };
    ::FcConfigParseAndLoadFromMemory(config, bytes(rule.c_str()), FcFalse);
    ::FcConfigAppFontAddFile(config, bytes(file.path));
}

void substitute(FcPattern* pattern, gpointer)
{
    // Paper has no pixels to fit outlines to; and what is embedded is a font's default shape, which
    // the file of a variable font names only through its instances.
    ::FcPatternDel(pattern, FC_HINTING);
    ::FcPatternAddBool(pattern, FC_HINTING, FcFalse);
    ::FcPatternDel(pattern, FC_VARIABLE);
    ::FcPatternAddBool(pattern, FC_VARIABLE, FcFalse);
}

double points(int pangoUnits)
{
    return static_cast<double>(pangoUnits) / PANGO_SCALE;
}

int pangoUnits(double points)
{
    return static_cast<int>(points * PANGO_SCALE);
}

std::size_t position(int index)
{
    return static_cast<std::size_t>(std::max(index, 0));
}

class Layout {
public:
    Layout(const Font& regular, const Font& bold)
        : m_config(::FcInitLoadConfigAndFonts()), m_map(::pango_ft2_font_map_new())
    {
        if (m_config) {
            addFont(m_config.get(), regular, regularFamily);
            addFont(m_config.get(), bold, boldFamily);
        }
        auto* const map = PANGO_FC_FONT_MAP(m_map.get());
        ::pango_fc_font_map_set_config(map, m_config.get());
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

    void lines(const Request& request, const Receiver& receiver) const
    {
        const auto runs = std::span(request.runs, request.runCount);
        std::string text;
        for (const Run& run : runs)
            text.append(run.text, run.size);
        const Owned<PangoLayout> layout(::pango_layout_new(m_context.get()));
        ::pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
        // Each line starts at the left, whatever script it starts with.
        ::pango_layout_set_auto_dir(layout.get(), FALSE);
        ::pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
        ::pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
        const double offset = std::min(request.indent, request.hang);
        ::pango_layout_set_width(layout.get(), pangoUnits(request.width - offset));
        ::pango_layout_set_indent(layout.get(), pangoUnits(request.indent - request.hang));
        setFonts(layout.get(), runs, request.size);

        const Owned<PangoLayoutIter> iterator(::pango_layout_get_iter(layout.get()));
        do {
            PangoRectangle logical{};
            ::pango_layout_iter_get_line_extents(iterator.get(), nullptr, &logical);
            const int above = ::pango_layout_iter_get_baseline(iterator.get()) - logical.y;
            receiver.line(receiver.object, points(above), points(logical.height - above));
            const PangoLayoutLine* line = ::pango_layout_iter_get_line_readonly(iterator.get());
            double x = offset + points(logical.x);
            for (const GSList* node = line->runs; node != nullptr; node = node->next)
                x = readRun(static_cast<PangoGlyphItem*>(node->data), text, x, receiver);
        } while (::pango_layout_iter_next_line(iterator.get()) != FALSE);
    }

private:
    static void setFonts(PangoLayout* layout, std::span<const Run> runs, double size)
    {
        PangoAttrList* const attributes = ::pango_attr_list_new();
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
            ::pango_attr_list_insert(attributes, attribute);
        }
        ::pango_layout_set_attributes(layout, attributes);
        ::pango_attr_list_unref(attributes);
    }

    /// Glyphs that stand for one stretch of text together.
    struct Cluster {
        std::size_t firstGlyph{};
        std::size_t endGlyph{};
        std::size_t start{}; // in bytes of the text
        std::size_t end{};
    };

    /// From left to right.
    static std::vector<Cluster> clusters(PangoGlyphItem* run, const std::string& text)
    {
        std::vector<Cluster> found;
        PangoGlyphItemIter iterator{};
        auto more = ::pango_glyph_item_iter_init_start(&iterator, run, text.c_str());
        for (; more != FALSE; more = ::pango_glyph_item_iter_next_cluster(&iterator)) {
            // From right to left, the glyphs of a cluster are counted downwards.
            const bool isForward = iterator.start_glyph < iterator.end_glyph;
            found.push_back({position(isForward ? iterator.start_glyph : iterator.end_glyph + 1),
                             position(isForward ? iterator.end_glyph : iterator.start_glyph + 1),
                             position(iterator.start_index), position(iterator.end_index)});
        }
        std::ranges::stable_sort(found, {}, &Cluster::firstGlyph);
        return found;
    }

    /// Returns where the run ends.
    static double readRun(PangoGlyphItem* run, const std::string& text, double x,
                          const Receiver& receiver)
    {
        Font file{};
        const bool hasFile = findFile(run->item->analysis.font, file);
        const auto glyphs = std::span(run->glyphs->glyphs, position(run->glyphs->num_glyphs));
        for (const Cluster& cluster : clusters(run, text)) {
            const auto own =
                glyphs.subspan(cluster.firstGlyph, cluster.endGlyph - cluster.firstGlyph);
            double width = 0;
            bool isKnown = hasFile;
            for (const PangoGlyphInfo& info : own) {
                width += points(info.geometry.width);
                if ((info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0) isKnown = false;
            }
            receiver.cluster(receiver.object, isKnown ? &file : nullptr, cluster.start, cluster.end,
                             x, width);
            for (const PangoGlyphInfo& info : own) {
                if (info.glyph != PANGO_GLYPH_EMPTY)
                    receiver.glyph(receiver.object, isKnown ? info.glyph : 0,
                                   x + points(info.geometry.x_offset),
                                   -points(info.geometry.y_offset));
                x += points(info.geometry.width);
            }
        }
        return x;
    }

    static bool findFile(PangoFont* font, Font& file)
    {
        FcPattern* const pattern =
            font == nullptr ? nullptr : ::pango_fc_font_get_pattern(PANGO_FC_FONT(font));
        FcChar8* path = nullptr;
        if (pattern == nullptr || ::FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch)
            return false;
        file.path = reinterpret_cast<const char*>(path);
        return ::FcPatternGetInteger(pattern, FC_INDEX, 0, &file.index) == FcResultMatch;
    }

    Owned<FcConfig> m_config;
    Owned<PangoFontMap> m_map;
    Owned<PangoContext> m_context;
};

void* create(const Font* regular, const Font* bold)
{
    return new Layout(*regular, *bold);
}

void destroy(void* layout)
{
    delete static_cast<Layout*>(layout);
}

void lines(void* layout, const Request* request, const Receiver* receiver)
{
    static_cast<const Layout*>(layout)->lines(*request, *receiver);
}

constexpr Functions functions{&create, &destroy, &lines};

} // namespace
} // namespace quillmark::ScriptModule

extern "C" __attribute__((visibility("default"))) const quillmark::ScriptModule::Functions*
quillmarkScripts()
{
    return &quillmark::ScriptModule::functions;
}
