#include "pdf/FontWalk.h"

#include "pdf/Limits.h"
#include "pdf/PageSet.h"
#include "pdf/PageTree.h"
#include "pdf/SubsetPrefix.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace quillmark::PDFFontScanner {
namespace {

using PDF::ArrayRef;
using PDF::DictionaryRef;
using PDF::Identity;
namespace Limits = PDF::Limits;
using PDF::StreamRef;

/// What one font dictionary says, before merging.
struct Description {
    std::string rawName;
    std::string subtype;
    EmbeddedProgram program{EmbeddedProgram::notEmbedded};
    StreamRef file; // null when nothing is embedded
};

/// The font program of a descriptor; an OpenType file counts as such only if it says so.
void findProgram(const PDF::Dictionary& descriptor, Description& font)
{
    if ((font.file = descriptor.stream("FontFile2"))) {
        font.program = EmbeddedProgram::trueType;
    } else if ((font.file = descriptor.stream("FontFile3"))) {
        const bool openType = font.file->dictionary()->name("Subtype") == "OpenType";
        font.program = openType ? EmbeddedProgram::openType : EmbeddedProgram::cff;
    } else if ((font.file = descriptor.stream("FontFile"))) {
        font.program = EmbeddedProgram::type1;
    }
}

Description describe(const PDF::Dictionary& font)
{
    Description description;
    const auto subtype = font.name("Subtype");
    description.subtype = subtype.value_or("Unknown");
    DictionaryRef descriptor = font.dictionary("FontDescriptor");
    if (subtype == "Type0") {
        const auto descendants = font.array("DescendantFonts");
        if (const auto descendant = descendants ? descendants->dictionary(0) : nullptr) {
            descriptor = descendant->dictionary("FontDescriptor");
            description.subtype = "Type0 / " + descendant->name("Subtype").value_or("?");
        }
    }
    auto name = font.name("BaseFont");
    if (!name && descriptor) name = descriptor->name("FontName");
    description.rawName = std::move(name).value_or("(unnamed font)");

    if (subtype == "Type3")
        description.program = EmbeddedProgram::type3;
    else if (descriptor)
        findProgram(*descriptor, description);
    return description;
}

/// What a container is met as. A document may use one dictionary as several of these; it is then
/// gone through as each. So containers nest at most twice (fonts in an appearance in its states
/// among the annotations), and each only in those of roles before its own.
enum class Role { annotations, appearanceStates, objects, fonts };

/// A container that fonts are reached through: a dictionary of fonts, of XObjects or of appearance
/// states, or an array of annotations. Many resources and pages may share one. It is gone through
/// once; meeting it again means only that everything in it is used on one more page, so it keeps
/// the pages, and the fonts collect them at the end. That keeps the walk linear in the size of the
/// file, whatever is shared with whom.
struct Place {
    Role role{};
    PageSet pages;
    std::vector<std::size_t> within; // places through which this one was reached
};

/// XObjects that are being gone through. Forms nest as deep as the document likes, so their places
/// are on a stack of our own. A form may lead back to a place that is on the stack: what is left of
/// it is then done there and then, which is where a recursive walk would do it.
struct Enumeration {
    std::vector<PDF::Entry> entries;
    std::size_t next{};
};

class Walk {
public:
    void scanPage(const DictionaryRef& page, int number);
    [[nodiscard]] std::vector<Found> finish();

private:
    void scanAnnotations(const PDF::Array& annotations);
    void scanAppearance(const PDF::Dictionary& annotation, std::size_t annotations);
    void scanStream(const StreamRef& stream, std::size_t within);
    void scanForms(const DictionaryRef& resources, std::optional<std::size_t> within);
    void enter(const PDF::Dictionary& resources, std::optional<std::size_t> container);
    std::size_t recordFonts(const PDF::Dictionary& fonts);
    std::optional<std::size_t> fontIndex(const PDF::Dictionary& font);
    void addName(Found& font, std::string name);

    std::pair<std::size_t, bool> placeOf(Identity identity, Role role);
    void within(std::size_t place, std::optional<std::size_t> container);
    void takePagesOfContainers(Role role);
    PageSet withPagesOf(std::span<const std::size_t> places, std::vector<PageSet::Run> runs);

    int m_page{};
    std::unordered_set<Identity> m_visited;                                // resources
    std::array<std::unordered_map<Identity, std::size_t>, 4> m_placeIndex; // by role
    std::vector<Place> m_places;
    std::unordered_map<std::size_t, Enumeration> m_enumerations; // unfinished, by place
    std::vector<std::size_t> m_stack;                            // places of XObjects
    std::size_t m_pendingObjects{};                              // in unfinished enumerations

    std::vector<Found> m_fonts;
    std::vector<int> m_firstPages;                      // of each font
    std::vector<std::vector<std::size_t>> m_fontPlaces; // of each font
    std::unordered_map<std::string, std::size_t> m_merged;
    std::unordered_map<Identity, std::optional<std::size_t>> m_fontIndex;

    std::size_t m_namesLeft{Limits::fontNames};
    std::size_t m_runs{}; // gathered so far, against Limits::fontPages
};

std::pair<std::size_t, bool> Walk::placeOf(Identity identity, Role role)
{
    auto& index = m_placeIndex[static_cast<std::size_t>(role)];
    const auto [found, isNew] = index.try_emplace(identity, m_places.size());
    if (isNew) m_places.emplace_back().role = role;
    return {found->second, isNew};
}

/// Adds the current page to a place: directly, or by way of the container it was reached through.
void Walk::within(std::size_t place, std::optional<std::size_t> container)
{
    auto& target = m_places[place];
    if (!container)
        target.pages.add(m_page);
    else if (target.within.empty() || target.within.back() != *container)
        target.within.push_back(*container);
}

void Walk::scanPage(const DictionaryRef& page, int number)
{
    m_page = number;
    if (const auto resources = PDF::resources(page)) scanForms(resources, std::nullopt);
    if (const auto annotations = page->array("Annots")) scanAnnotations(*annotations);
}

void Walk::scanAnnotations(const PDF::Array& annotations)
{
    const auto [place, isNew] = placeOf(annotations.identity(), Role::annotations);
    within(place, std::nullopt);
    if (!isNew) return;
    for (std::size_t i = 0; i < annotations.size(); ++i) {
        if (const auto annotation = annotations.dictionaryWith(i, "AP"))
            scanAppearance(*annotation, place);
    }
}

/// The normal appearance only: what shows when nothing is pressed or pointed at.
void Walk::scanAppearance(const PDF::Dictionary& annotation, std::size_t annotations)
{
    const auto appearances = annotation.dictionary("AP");
    if (!appearances) return;
    if (const auto stream = appearances->stream("N")) {
        scanStream(stream, annotations);
    } else if (const auto states = appearances->dictionary("N")) {
        const auto [place, isNew] = placeOf(states->identity(), Role::appearanceStates);
        within(place, annotations);
        if (!isNew) return;
        for (const auto& state : PDF::entries(*states)) {
            if (const auto appearance = state.value->stream()) scanStream(appearance, place);
        }
    }
}

void Walk::scanStream(const StreamRef& stream, std::size_t within)
{
    if (const auto resources = stream->dictionary()->dictionary("Resources"))
        scanForms(resources, within);
}

/// Scans resources and the forms below them, in the order of a recursive walk: depth first.
void Walk::scanForms(const DictionaryRef& resources, std::optional<std::size_t> within)
{
    enter(*resources, within);
    while (!m_stack.empty()) {
        const std::size_t place = m_stack.back();
        auto& [entries, next] = m_enumerations[place];
        if (next == entries.size()) {
            m_stack.pop_back();
            m_pendingObjects -= entries.size();
            m_enumerations[place] = {}; // done: keeps nothing alive
            continue;
        }
        const auto form = entries[next++].value->stream();
        const auto dictionary = form ? form->dictionary() : nullptr;
        if (!dictionary || dictionary->name("Subtype") != "Form") continue;
        if (const auto nested = dictionary->dictionary("Resources")) enter(*nested, place);
    }
}

/// Records the fonts of resources; if they are new, their forms come next.
void Walk::enter(const PDF::Dictionary& resources, std::optional<std::size_t> container)
{
    const bool isNew = m_visited.insert(resources.identity()).second;
    if (const auto fonts = resources.dictionary("Font")) within(recordFonts(*fonts), container);
    if (!isNew) return;
    const auto objects = resources.dictionary("XObject");
    if (!objects) return;
    const auto [place, firstTime] = placeOf(objects->identity(), Role::objects);
    within(place, std::nullopt);
    if (firstTime) {
        auto entries = PDF::entries(*objects);
        if (m_pendingObjects + entries.size() > Limits::pendingObjects) return;
        m_pendingObjects += entries.size();
        m_enumerations[place].entries = std::move(entries);
    }
    m_stack.push_back(place);
}

std::size_t Walk::recordFonts(const PDF::Dictionary& fonts)
{
    const auto [place, isNew] = placeOf(fonts.identity(), Role::fonts);
    if (!isNew) return place;
    for (const auto& entry : PDF::entries(fonts)) {
        const auto dictionary = entry.value->dictionary();
        const auto font = dictionary ? fontIndex(*dictionary) : std::nullopt;
        if (font) m_fontPlaces[*font].push_back(place);
    }
    return place;
}

/// The place of a font dictionary among the fonts found, where dictionaries that show the same font
/// share one. Absent when there are too many fonts.
std::optional<std::size_t> Walk::fontIndex(const PDF::Dictionary& font)
{
    const auto [known, isNew] = m_fontIndex.try_emplace(font.identity());
    if (!isNew) return known->second;

    Description description = describe(font);
    auto [baseName, subset] = splitSubsetPrefix(description.rawName);
    const bool embedded = description.program != EmbeddedProgram::notEmbedded;
    const auto [merged, isFirst] =
        m_merged.try_emplace(baseName + (embedded ? "|e" : "|n"), m_fonts.size());
    const std::size_t index = merged->second;
    if (isFirst) {
        if (m_fonts.size() == Limits::fonts) {
            m_merged.erase(merged);
            return std::nullopt;
        }
        auto& found = m_fonts.emplace_back();
        found.baseName = std::move(baseName);
        found.subtype = std::move(description.subtype);
        found.program = description.program;
        m_firstPages.push_back(m_page);
        m_fontPlaces.emplace_back();
    }
    auto& found = m_fonts[index];
    addName(found, std::move(description.rawName));
    found.subset = found.subset || subset;
    // Only the first readable program counts, so later ones are not even decoded.
    if (!found.data && description.file) found.data = description.file->data();
    known->second = index;
    return index;
}

/// Adds a name that the document has for a font. Without one there would be nothing to show.
void Walk::addName(Found& font, std::string name)
{
    constexpr std::size_t costOfName = 32;
    const std::size_t cost = name.size() + costOfName;
    if (cost > m_namesLeft && !font.pdfNames.empty()) return;
    if (font.pdfNames.insert(std::move(name)).second) m_namesLeft -= std::min(m_namesLeft, cost);
}

/// Adds to the places of a role the pages of the containers they were reached through, which must
/// have theirs already.
void Walk::takePagesOfContainers(Role role)
{
    for (auto& place : m_places) {
        if (place.role != role || place.within.empty()) continue;
        const auto own = place.pages.runs();
        place.pages = withPagesOf(place.within, {own.begin(), own.end()});
    }
}

/// The pages of these places, and these runs.
PageSet Walk::withPagesOf(std::span<const std::size_t> places, std::vector<PageSet::Run> runs)
{
    for (const std::size_t place : places) {
        if (m_runs > Limits::fontPages) break;
        const auto more = m_places[place].pages.runs();
        runs.insert(runs.end(), more.begin(), more.end());
        m_runs += more.size() + 1;
    }
    return PageSet::of(std::move(runs));
}

std::vector<Found> Walk::finish()
{
    takePagesOfContainers(Role::appearanceStates);
    takePagesOfContainers(Role::fonts);
    std::size_t left = Limits::fontPages;
    for (std::size_t font = 0; font < m_fonts.size(); ++font) {
        const int first = m_firstPages[font];
        auto& pages = m_fonts[font].pages;
        pages = withPagesOf(m_fontPlaces[font], {{first, first}})
                    .numbers(std::max<std::size_t>(left, 1));
        left -= std::min(left, pages.size());
    }
    return std::move(m_fonts);
}

} // namespace

Scan scan(const PDF::Document& document)
{
    Walk walk;
    PDF::PageTree tree(document);
    int pageCount = 0;
    while (const auto page = tree.next())
        walk.scanPage(page, ++pageCount);
    return {walk.finish(), pageCount};
}

} // namespace quillmark::PDFFontScanner
