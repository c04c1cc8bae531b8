// The text of a licence file beside a font, and the licence recognised in it.

#include "Harness.h"

#include "assessment/Classifier.h"
#include "library/LicenseFile.h"

#include <array>
#include <filesystem>

#include <sys/mman.h>
#include <unistd.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const int file = ::memfd_create("license", MFD_CLOEXEC);
    fuzz::expect(file >= 0 && ::write(file, data, size) == static_cast<ssize_t>(size));
    const std::array<std::filesystem::path, 1> candidates{"/proc/self/fd/" + std::to_string(file)};

    FontFacts font;
    font.postScriptName = font.family = "Foo";
    const FontFacts found = LicenseFile::attach(font, candidates);
    ::close(file);
    fuzz::expect(found.licenseDescription.has_value() == found.licenseFile.has_value());
    fuzz::expectText(found.licenseDescription);
    const Assessment assessment = Classifier::assess(found);
    // Text that names no known licence is a licence of its own, and only no text is none.
    fuzz::expect((assessment.license == LicenseKind::none) == !found.licenseDescription);
    return 0;
}
