#include "ReadFolder.h"
#include "files/FileDescriptor.h"
#include "support/FontContainers.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include <sys/syscall.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

constexpr int fileCount = 2'000;
constexpr int leastKills = 200;
constexpr int dueKills = leastKills + 20; // the last ones may come too late

/// The processes that a thread of this program has started and not yet buried.
std::vector<pid_t> childrenOf(pid_t thread)
{
    std::vector<pid_t> found;
    std::ifstream list("/proc/self/task/" + std::to_string(thread) + "/children");
    for (pid_t process = 0; list >> process;)
        found.push_back(process);
    return found;
}

/// Kills the readers of this program one after the other at random moments: while they start, wait,
/// read or answer.
class Killer {
public:
    explicit Killer(unsigned seed) : m_random(seed), m_thread([this](auto stop) { run(stop); }) {}

    /// A file was delivered or lost on the calling thread, and so many kills are due by now. Waits
    /// until most of them have happened, unless that thread has no reader that is left to kill:
    /// what it has read is then delivered, and a new one started.
    void noteProgress(int due)
    {
        std::unique_lock lock(m_mutex);
        m_inVain[::gettid()] = 0;
        m_due = std::max(m_due, due);
        m_changed.notify_all();
        m_changed.wait(
            lock, [&] { return m_kills + mostBehind >= due || victimsOf(::gettid()).empty(); });
    }
    [[nodiscard]] int kills()
    {
        const std::lock_guard lock(m_mutex);
        return m_kills;
    }

private:
    /// So many processes of a thread may be killed before they have done anything. With ten such,
    /// it gives up, as it should.
    static constexpr int mostInVain = 4;
    /// So many kills may be left over when a file is delivered.
    static constexpr int mostBehind = 3;
    /// About the time that a reader takes to start.
    static constexpr unsigned mostMicroseconds = 3'000;

    void run(const std::stop_token& stop)
    {
        std::unique_lock lock(m_mutex);
        while (!stop.stop_requested()) {
            if (!m_changed.wait(lock, stop, [this] { return m_kills < m_due; })) return;
            const std::chrono::microseconds delay(m_random() % mostMicroseconds);
            m_changed.wait_for(lock, stop, delay, [] { return false; });
            std::vector<Victim> victims;
            for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
                const pid_t thread = std::stoi(task.path().filename());
                if (m_inVain[thread] < mostInVain)
                    for (const pid_t process : victimsOf(thread))
                        victims.push_back({thread, process});
            }
            if (!victims.empty()) kill(victims[m_random() % victims.size()]);
        }
    }

    [[nodiscard]] std::vector<pid_t> victimsOf(pid_t thread) const
    {
        std::vector<pid_t> processes = childrenOf(thread);
        std::erase_if(processes, [this](pid_t process) { return m_victims.contains(process); });
        return processes;
    }

    struct Victim {
        pid_t thread{};
        pid_t process{};
    };
    void kill(const Victim& victim)
    {
        // The number may be another program's by now. If it is still a reader's, that is the one
        // which was opened.
        const FileDescriptor process(
            static_cast<int>(::syscall(SYS_pidfd_open, victim.process, 0)));
        if (std::ranges::count(childrenOf(victim.thread), victim.process) == 0 ||
            ::syscall(SYS_pidfd_send_signal, process.get(), SIGKILL, nullptr, 0) != 0)
            return;
        m_victims.insert(victim.process);
        ++m_inVain[victim.thread];
        ++m_kills;
        m_changed.notify_all();
    }

    std::mt19937 m_random;
    std::mutex m_mutex;
    std::set<pid_t> m_victims;
    std::map<pid_t, int> m_inVain; // by thread, since it was last given a file
    int m_due{};
    int m_kills{};
    std::condition_variable_any m_changed;
    std::jthread m_thread; // the last one: it uses the others
};

/// A font with so much text that an answer goes out with every fifth file.
std::string writeLongFont(const TemporaryFolder& folder, const std::string& name)
{
    static const NameRecord copyright = windowsEnglish(0, std::u16string(2'000, u'\u2026'));
    const std::u16string wide(name.begin(), name.end());
    const Bytes font = FontBytes()
                           .face()
                           .nameRecord(copyright)
                           .name(1, wide)
                           .name(6, wide)
                           .name(13, u"All rights reserved")
                           .os2({.fsType = 8})
                           .build();
    return folder.write(name + ".woff", woff(trueTypeVersion, tablesOf(font)).build());
}

TEST(Kill, TwoHundredAtRandomMomentsOfAScanLoseOneFileEachAtMost)
{
    const TemporaryFolder folder;
    std::vector<std::string> paths;
    for (int i = 0; i < fileCount; ++i)
        paths.push_back(writeLongFont(folder, "font" + std::to_string(i)));
    const auto rows = [](std::vector<PlatformFont>&& faces) {
        std::vector<FontFacts> facts;
        for (PlatformFont& face : faces)
            facts.push_back(FontLibrary::facts(std::move(face), FontOrigin::folder));
        return facts;
    };
    std::vector<std::vector<FontFacts>> expected(paths.size());
    LocalFontFiles().facesOfEach(paths, Faces::all, [&](std::size_t i, auto&& faces) {
        expected[i] = rows(std::forward<decltype(faces)>(faces));
    });
    ASSERT_THAT(expected, testing::Each(testing::SizeIs(1)));

    const auto files = fontReaders(ordinaryReader());
    const unsigned seed = std::random_device()();
    Killer killer(seed);
    std::mutex mutex;
    std::vector<int> times(paths.size());
    int delivered = 0;
    int lost = 0;
    files->facesOfEach(paths, Faces::all, [&](std::size_t i, std::vector<PlatformFont>&& faces) {
        const std::vector<FontFacts> facts = rows(std::move(faces));
        int due = 0;
        {
            const std::lock_guard lock(mutex);
            ++times[i];
            if (facts.empty())
                ++lost;
            else
                EXPECT_EQ(facts, expected[i]) << paths[i];
            due = ++delivered * dueKills / fileCount;
        }
        // However slow the machine, the kills fall into the scan and are spread over it.
        killer.noteProgress(due);
    });
    const int kills = killer.kills();
    std::cout << kills << " kills (seed " << seed << "), " << lost << " files lost\n";
    EXPECT_THAT(times, testing::Each(1));
    EXPECT_GE(kills, leastKills);
    EXPECT_GT(lost, 0);
    EXPECT_LE(lost, kills);
}

} // namespace
} // namespace quillmark::test
