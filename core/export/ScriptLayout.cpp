#include "export/ScriptLayout.h"

#include <algorithm>
#include <list>
#include <string_view>
#include <utility>

#include <fontconfig/fontconfig.h>
#include <pango/pangofc-fontmap.h>
#include <pango/pangoft2.h>

namespace quillmark {
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

void addFont(FcConfig* config, const FontFile& file, const char* family)
{
    std::string rule = "<fontconfig><match target=\"scan\"><test name=\"file\"><string>";
    appendEscaped(rule, file.path);
    rule += "</string></test><edit name=\"family\" mode=\"assign\"><string>";
    rule += family;
    rule += "</string></edit></match></fontconfig>";
    const auto bytes = [](const char* text) { return reinterpret_cast<const FcChar8*>(text); };
    ::FcConfigParseAndLoadFromMemory(config, bytes(rule.c_str()), FcFalse);
    ::FcConfigAppFontAddFile(config, bytes(file.path.c_str()));
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

} // namespace

class ScriptLayout::Pango {
public:
    explicit Pango(const ReportFonts& fonts)
        : m_config(::FcInitLoadConfigAndFonts()), m_map(::pango_ft2_font_map_new())
    {
        if (m_config) {
            addFont(m_config.get(), fonts.regular, regularFamily);
            addFont(m_config.get(), fonts.bold, boldFamily);
        }
        auto* const map = PANGO_FC_FONT_MAP(m_map.get());
        ::pango_fc_font_map_set_config(map, m_config.get());
        ::pango_fc_font_map_set_default_substitute(map, &substitute, nullptr, nullptr);
        ::pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(map), 72, 72);
        m_context.reset(::pango_font_map_create_context(m_map.get()));
        ::pango_context_set_round_glyph_positions(m_context.get(), FALSE);
        ::pango_context_set_base_dir(m_context.get(), PANGO_DIRECTION_LTR);
    }

    std::vector<ScriptLine> lines(const Paragraph& paragraph, double width, double indent,
                                  double hang)
    {
        const std::string text = paragraph.text();
        const Owned<PangoLayout> layout(::pango_layout_new(m_context.get()));
        ::pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
        // Each line starts at the left, whatever script it starts with.
        ::pango_layout_set_auto_dir(layout.get(), FALSE);
        ::pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
        ::pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
        const double offset = std::min(indent, hang);
        ::pango_layout_set_width(layout.get(), pangoUnits(width - offset));
        ::pango_layout_set_indent(layout.get(), pangoUnits(indent - hang));
        setFonts(layout.get(), paragraph);

        std::vector<ScriptLine> lines;
        const Owned<PangoLayoutIter> iterator(::pango_layout_get_iter(layout.get()));
        do {
            PangoRectangle logical{};
            ::pango_layout_iter_get_line_extents(iterator.get(), nullptr, &logical);
            const PangoLayoutLine* line = ::pango_layout_iter_get_line_readonly(iterator.get());
            lines.push_back(readLine(line, text, offset + points(logical.x)));
            const int above = ::pango_layout_iter_get_baseline(iterator.get()) - logical.y;
            lines.back().ascent = points(above);
            lines.back().descent = points(logical.height - above);
        } while (::pango_layout_iter_next_line(iterator.get()) != FALSE);
        return lines;
    }

private:
    static void setFonts(PangoLayout* layout, const Paragraph& paragraph)
    {
        PangoAttrList* const attributes = ::pango_attr_list_new();
        std::size_t start = 0;
        for (const TextRun& run : paragraph.runs) {
            const bool isBold = run.weight == Weight::bold;
            const Owned<PangoFontDescription> font(::pango_font_description_new());
            std::string family(isBold ? boldFamily : regularFamily);
            family += ",monospace";
            ::pango_font_description_set_family(font.get(), family.c_str());
            ::pango_font_description_set_weight(font.get(),
                                                isBold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
            ::pango_font_description_set_absolute_size(font.get(), paragraph.size * PANGO_SCALE);
            PangoAttribute* const attribute = ::pango_attr_font_desc_new(font.get());
            attribute->start_index = static_cast<guint>(start);
            start += run.text.size();
            attribute->end_index = static_cast<guint>(start);
            ::pango_attr_list_insert(attributes, attribute);
        }
        ::pango_layout_set_attributes(layout, attributes);
        ::pango_attr_list_unref(attributes);
    }

    ScriptLine readLine(const PangoLayoutLine* line, const std::string& text, double x)
    {
        ScriptLine read;
        for (const GSList* node = line->runs; node != nullptr; node = node->next) {
            auto* const run = static_cast<PangoGlyphItem*>(node->data);
            x = readRun(read, run, text, x);
        }
        return read;
    }

    /// Returns where the run ends.
    double readRun(ScriptLine& line, PangoGlyphItem* run, const std::string& text, double x)
    {
        const FontFile* const font = fontFile(run->item->analysis.font);
        const PangoGlyphString& glyphs = *run->glyphs;
        std::vector<double> starts;
        for (const PangoGlyphInfo& info : std::span(glyphs.glyphs, position(glyphs.num_glyphs))) {
            starts.push_back(x);
            x += points(info.geometry.width);
        }
        starts.push_back(x);

        const std::size_t first = line.clusters.size();
        PangoGlyphItemIter iterator{};
        auto more = ::pango_glyph_item_iter_init_start(&iterator, run, text.c_str());
        for (; more != FALSE; more = ::pango_glyph_item_iter_next_cluster(&iterator)) {
            // From right to left, the glyphs of a cluster are counted downwards.
            const bool isForward = iterator.start_glyph < iterator.end_glyph;
            const std::size_t begin =
                position(isForward ? iterator.start_glyph : iterator.end_glyph + 1);
            const std::size_t end =
                position(isForward ? iterator.end_glyph : iterator.start_glyph + 1);
            ScriptCluster cluster;
            cluster.font = font;
            cluster.start = position(iterator.start_index);
            cluster.end = position(iterator.end_index);
            cluster.x = starts[begin];
            cluster.width = starts[end] - starts[begin];
            for (std::size_t glyph = begin; glyph < end; ++glyph)
                addGlyph(cluster, glyphs.glyphs[glyph], starts[glyph]);
            line.clusters.push_back(std::move(cluster));
        }
        std::ranges::stable_sort(line.clusters.begin() + static_cast<std::ptrdiff_t>(first),
                                 line.clusters.end(), {}, &ScriptCluster::x);
        return x;
    }

    static void addGlyph(ScriptCluster& cluster, const PangoGlyphInfo& info, double x)
    {
        if (info.glyph == PANGO_GLYPH_EMPTY) return;
        if ((info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0) {
            cluster.font = nullptr;
            cluster.glyphs.push_back({0, x, 0});
            return;
        }
        cluster.glyphs.push_back(
            {info.glyph, x + points(info.geometry.x_offset), -points(info.geometry.y_offset)});
    }

    const FontFile* fontFile(PangoFont* font)
    {
        FcPattern* const pattern =
            font == nullptr ? nullptr : ::pango_fc_font_get_pattern(PANGO_FC_FONT(font));
        FcChar8* path = nullptr;
        if (pattern == nullptr || ::FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch)
            return nullptr;
        FontFile file{reinterpret_cast<const char*>(path), 0};
        ::FcPatternGetInteger(pattern, FC_INDEX, 0, &file.index);
        const auto known = std::ranges::find(m_files, file);
        return known != m_files.end() ? &*known : &m_files.emplace_back(std::move(file));
    }

    Owned<FcConfig> m_config;
    Owned<PangoFontMap> m_map;
    Owned<PangoContext> m_context;
    std::list<FontFile> m_files; // which keeps their addresses
};

ScriptLayout::ScriptLayout(const ReportFonts& fonts) : m_pango(std::make_unique<Pango>(fonts)) {}

ScriptLayout::~ScriptLayout() = default;

std::vector<ScriptLine> ScriptLayout::lines(const Paragraph& paragraph, double width, double indent,
                                            double hang)
{
    return m_pango->lines(paragraph, width, indent, hang);
}

} // namespace quillmark
