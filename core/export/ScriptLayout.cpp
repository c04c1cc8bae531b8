#include "export/ScriptLayout.h"

#include "files/ProgramFiles.h"

#include <algorithm>

#include <dlfcn.h>

namespace quillmark {
namespace {

/// Null when the module, or a library that it needs, is not there. It stays loaded: libraries
/// beneath Pango do not bear being unloaded.
const ScriptModule::Functions* load()
{
    const auto path = besideProgram("lib/quillmark/modules/quillmark-scripts.so");
    void* const module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) return nullptr;
    const auto entry =
        reinterpret_cast<ScriptModule::Entry>(::dlsym(module, ScriptModule::entryName));
    return entry == nullptr ? nullptr : entry();
}

} // namespace

ScriptLayout::ScriptLayout(const ReportFonts& fonts)
{
    static const ScriptModule::Functions* const loaded = load();
    m_functions = loaded;
    if (m_functions == nullptr) return;
    const auto font = [](const FontFile& file) {
        return ScriptModule::Font{file.path.c_str(), file.index};
    };
    const ScriptModule::Font regular = font(fonts.regular);
    const ScriptModule::Font bold = font(fonts.bold);
    m_layout = m_functions->create(&regular, &bold);
}

ScriptLayout::~ScriptLayout()
{
    if (m_layout != nullptr) m_functions->destroy(m_layout);
}

std::vector<ScriptLine> ScriptLayout::lines(const Paragraph& paragraph, double width, double indent,
                                            double hang)
{
    struct Reading {
        ScriptLayout& layout;
        std::vector<ScriptLine> lines;
    };
    Reading reading{*this, {}};
    if (m_layout == nullptr) return {};
    std::vector<ScriptModule::Run> runs;
    for (const TextRun& run : paragraph.runs)
        runs.push_back({run.text.data(), run.text.size(), run.weight == Weight::bold});
    const ScriptModule::Request request{runs.data(), runs.size(), paragraph.size,
                                        width,       indent,      hang};
    ScriptModule::Receiver receiver{};
    receiver.object = &reading;
    receiver.line = [](void* object, double ascent, double descent) {
        static_cast<Reading*>(object)->lines.push_back({{}, ascent, descent});
    };
    receiver.cluster = [](void* object, const ScriptModule::Font* font, std::size_t start,
                          std::size_t end, double x, double clusterWidth) {
        auto& [layout, lines] = *static_cast<Reading*>(object);
        lines.back().clusters.push_back({layout.keep(font), {}, start, end, x, clusterWidth});
    };
    receiver.glyph = [](void* object, unsigned glyph, double x, double y) {
        static_cast<Reading*>(object)->lines.back().clusters.back().glyphs.push_back({glyph, x, y});
    };
    m_functions->lines(m_layout, &request, &receiver);
    return std::move(reading.lines);
}

const FontFile* ScriptLayout::keep(const ScriptModule::Font* font)
{
    if (font == nullptr) return nullptr;
    const auto known = std::ranges::find_if(m_files, [font](const FontFile& file) {
        return file.index == font->index && file.path == font->path;
    });
    if (known != m_files.end()) return &*known;
    return &m_files.emplace_back(FontFile{font->path, font->index});
}

} // namespace quillmark
