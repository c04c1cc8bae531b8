// What a user waits for in a list of 20,000 fonts: from a typed letter, a click on a chip or on a
// header until the window has painted what comes of it. With a screen reader listening, unless
// --without-accessibility is given. QT_QPA_PLATFORM=xcb measures on a display instead of without
// one.

#include "model/AuditList.h"
#include "ui/AuditTableModel.h"
#include "ui/FilterBar.h"
#include "ui/FontListView.h"
#include "ui/FontTable.h"

#include <benchmark/benchmark.h>

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace quillmark;

constexpr std::size_t fontCount = 20'000;

AuditRow row(std::size_t number)
{
    constexpr std::array families{"Garamond", "Noto Sans",   "Brook",   "DejaVu Serif",
                                  "Cedar",    "Open Gothic", "Juniper", "Kestrel Slab"};
    constexpr std::array styles{"Regular", "Bold", "Italic", "Light", "Semibold Italic"};
    constexpr std::array makers{"Acme Foundry", "The Type Company", "Müller & Söhne"};
    // In no order that sorting could profit from.
    const std::size_t mixed = number * 7919 % fontCount;
    AuditRow row;
    row.facts.family =
        std::string(families[number % families.size()]) + " " + std::to_string(mixed);
    row.facts.style = styles[mixed % styles.size()];
    row.facts.fullName = row.facts.family + " " + row.facts.style;
    row.facts.postScriptName = "Font" + std::to_string(mixed) + "-" + row.facts.style;
    row.facts.manufacturer = makers[number % makers.size()];
    row.facts.filePath = "/usr/share/fonts/collection/Font" + std::to_string(mixed) + ".ttf";
    row.facts.os2 = OS2Info{.version = 4,
                            .fsType = static_cast<std::uint16_t>(number % 3 * 4),
                            .vendorID = std::nullopt};
    row.assessment.verdict = allCases<Verdict>[number % 3];
    row.assessment.license = allCases<LicenseKind>[number % allCases<LicenseKind>.size()];
    row.assessment.appleBundled = number % 5 == 0;
    return row;
}

AuditList list(const std::string& folder)
{
    std::vector<AuditRow> rows;
    rows.reserve(fontCount);
    for (std::size_t i = 0; i < fontCount; ++i)
        rows.push_back(row(i));
    RowList prepared(std::move(rows));
    prepared.prepare(); // as the fonts of a scan are when the window gets them
    return AuditList::ofFolder({"/" + folder, std::move(prepared)});
}

/// A window with the list, and a way to know when it has been painted.
class Window final : public QObject {
public:
    Window()
    {
        view.resize(900, 780);
        view.setList(list("fonts"));
        view.show();
        table().viewport()->installEventFilter(this);
        settle();
    }

    [[nodiscard]] FontTable& table() const { return *view.findChild<FontTable*>(); }
    [[nodiscard]] FilterBar& filters() const { return *view.findChild<FilterBar*>(); }
    [[nodiscard]] AuditTableModel& model() const { return *view.findChild<AuditTableModel*>(); }

    /// Until the table has been painted.
    void awaitPaint()
    {
        m_painted = false;
        QElapsedTimer timer;
        timer.start();
        while (!m_painted && timer.elapsed() < 5'000)
            QCoreApplication::processEvents();
        if (!m_painted) std::abort(); // what would be measured is not what is wanted
    }
    static void settle()
    {
        for (int i = 0; i < 10; ++i)
            QCoreApplication::processEvents();
    }

    FontListView view;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) m_painted = true;
        return QObject::eventFilter(watched, event);
    }

private:
    bool m_painted{};
};

/// Times `act` until it is painted, each time after `prepare`.
void measure(benchmark::State& state, auto prepare, auto act)
{
    Window window;
    for (auto _ : state) {
        state.PauseTiming();
        prepare(window);
        Window::settle();
        state.ResumeTiming();
        act(window);
        window.awaitPaint();
    }
}

void typeLetter(benchmark::State& state, std::string text)
{
    const QString typed = QString::fromStdString(text);
    measure(
        state, [&](Window& window) { window.view.setSearch(typed.chopped(1)); },
        [&](Window& window) { window.view.setSearch(typed); });
}

void deleteSearch(benchmark::State& state)
{
    measure(
        state, [](Window& window) { window.view.setSearch(QStringLiteral("garamond")); },
        [](Window& window) { window.view.setSearch({}); });
}

void clickChip(benchmark::State& state, std::optional<Verdict> before,
               std::optional<Verdict> verdict)
{
    measure(
        state, [&](Window& window) { window.filters().setVerdict(before); },
        [&](Window& window) { window.filters().setVerdict(verdict); });
}

void clickHeader(benchmark::State& state, AuditColumn column, bool first)
{
    const AuditColumn other =
        column == AuditColumn::verdict ? AuditColumn::font : AuditColumn::verdict;
    const AuditList fresh = list("others");
    const auto sortBy = [](Window& window, AuditColumn wanted) {
        window.table().sortByColumn(*window.model().sectionOf(wanted), Qt::AscendingOrder);
    };
    measure(
        state,
        [&](Window& window) {
            sortBy(window, other);
            if (!first) return;
            window.view.setList(std::nullopt);
            window.view.setList(fresh);
        },
        [&](Window& window) { sortBy(window, column); });
}

void readAgain(benchmark::State& state)
{
    const std::array lists{list("fonts"), list("fonts")};
    std::size_t next = 0;
    measure(
        state, [&](Window&) { next = 1 - next; },
        [&](Window& window) { window.view.setList(lists.at(next)); });
}

void showAnother(benchmark::State& state)
{
    const std::array lists{list("some"), list("others")};
    std::size_t next = 0;
    measure(
        state, [&](Window&) { next = 1 - next; },
        [&](Window& window) { window.view.setList(lists.at(next)); });
}

template <typename... Arguments>
void add(const std::string& name, void (*function)(benchmark::State&, Arguments...),
         std::type_identity_t<Arguments>... arguments)
{
    benchmark::RegisterBenchmark(name.c_str(), function, arguments...)
        ->Unit(benchmark::kMillisecond);
}

void addAll()
{
    for (const std::string text : {"g", "ga", "gar", "gara", "reg", "müller", "nothing at all"})
        add("type the last letter of \"" + text + "\"", typeLetter, text);
    add("empty the search", deleteSearch);
    add("chip: Restricted", clickChip, std::nullopt, Verdict::restricted);
    add("chip: Restricted to Unknown", clickChip, Verdict::restricted, Verdict::unknown);
    add("chip: Likely OK to All", clickChip, Verdict::likelyOK, std::nullopt);
    for (const AuditColumn column : columnsOf(ListKind::fonts)) {
        const std::string name = columnTitle(column, ListKind::fonts).toStdString();
        add("header: " + name + ", first", clickHeader, column, true);
        add("header: " + name, clickHeader, column, false);
    }
    add("the same list, read again", readAgain);
    add("another list", showAnother);
}

/// As a screen reader's bridge would, takes part in what is announced.
void listen(QAccessibleEvent* event)
{
    benchmark::DoNotOptimize(event->accessibleInterface());
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    bool listens = true;
    std::vector<char*> arguments;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "--without-accessibility") == 0)
            listens = false;
        else
            arguments.push_back(argv[i]);
    }
    if (listens && QGuiApplication::platformName() == QLatin1String("offscreen"))
        QAccessible::installUpdateHandler(listen);
    QAccessible::setActive(listens);
    int count = static_cast<int>(arguments.size());
    addAll();
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
