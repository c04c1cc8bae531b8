#include "library/FontLibrary.h"

#include "Fonts.h"
#include "library/Limits.h"
#include "support/FakeFontService.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace quillmark {
namespace {

using test::FakeFontService;
using test::platformFont;
using testing::IsEmpty;
using testing::SizeIs;

struct Instance {
    std::uint16_t styleID{};
    std::uint16_t postScriptNameID{};
};

/// An `fvar` table with one axis.
test::Bytes fvarTable(const std::vector<Instance>& instances)
{
    test::ByteWriter table;
    table.u16(1).u16(0).u16(16).u16(2).u16(1).u16(20);
    table.u16(static_cast<std::uint16_t>(instances.size())).u16(10);
    table.text("wght").u32(100U << 16U).u32(400U << 16U).u32(900U << 16U).u16(0).u16(256);
    for (const Instance& instance : instances)
        table.u16(instance.styleID).u16(0).u32(400U << 16U).u16(instance.postScriptNameID);
    return table.build();
}

PlatformFont variableFont(const std::string& path)
{
    PlatformFont font = platformFont("", {{0, u"(c) Var"},
                                          {1, u"Var"},
                                          {2, u"Regular"},
                                          {4, u"Var Regular"},
                                          {6, u"Var-Regular"},
                                          {256, u"Weight"},
                                          {257, u"Bold"},
                                          {258, u"Extra Light"},
                                          {259, u"VarPS-Light"}});
    font.fvar = fvarTable({{257, 0xFFFF}, {258, 259}});
    font.path = path;
    font.format = FontFormat::trueType;
    return font;
}

FontFacts listed(const PlatformFont& font)
{
    return FontLibrary::facts(font, FontOrigin::folder);
}

TEST(NamedInstances, HaveTheirOwnNamesAndEverythingElseOfTheirFont)
{
    const PlatformFont font = variableFont("/f/var.ttf");
    FakeFontService service;
    service.files["/f/var.ttf"] = {font};
    const std::vector fonts{listed(font)};
    const auto instances = FontLibrary::namedInstances(service, fonts);
    ASSERT_THAT(instances, SizeIs(2));
    FontFacts bold = fonts[0];
    bold.postScriptName = "Var-Bold";
    bold.style = "Bold";
    bold.fullName = "Var Bold";
    EXPECT_EQ(instances[0], bold);
    FontFacts light = fonts[0];
    light.postScriptName = "VarPS-Light";
    light.style = "Extra Light";
    light.fullName = "Var Extra Light";
    EXPECT_EQ(instances[1], light);
}

TEST(NamedInstances, AreTheSameOfSettledFaces)
{
    const PlatformFont font = variableFont("/f/var.ttf");
    PlatformFont other = font;
    other.postScriptName = "Other";
    FakeFontService service;
    service.files["/f/var.ttf"] = {font, other};
    const std::vector fonts{listed(font), listed(other)};
    const auto before = FontLibrary::namedInstances(service, fonts);
    ASSERT_THAT(before, SizeIs(4));
    FontLibrary::settle(service.files["/f/var.ttf"], Faces::variable);
    for (const PlatformFont& face : service.files["/f/var.ttf"])
        EXPECT_FALSE(face.name || face.fvar);
    // The fake knows variable faces by their tables.
    for (PlatformFont& face : service.files["/f/var.ttf"])
        face.fvar.emplace();
    EXPECT_EQ(FontLibrary::namedInstances(service, fonts), before);
}

TEST(NamedInstances, KeepALicenceFileThatTheFontGot)
{
    const PlatformFont font = variableFont("/f/var.ttf");
    FakeFontService service;
    service.files["/f/var.ttf"] = {font};
    std::vector fonts{listed(font)};
    fonts[0].licenseDescription = "text";
    fonts[0].licenseFile = "/f/OFL.txt";
    EXPECT_EQ(FontLibrary::namedInstances(service, fonts).at(0).licenseFile, "/f/OFL.txt");
}

TEST(NamedInstances, OtherFontsHaveNone)
{
    FakeFontService service;
    PlatformFont plain = platformFont("Plain", {{1, u"Plain"}});
    plain.path = "/f/plain.ttf";
    service.files["/f/plain.ttf"] = {plain};
    const std::vector fonts{listed(plain), listed(platformFont("NoFile")),
                            listed(variableFont("/f/gone.ttf"))};
    EXPECT_THAT(FontLibrary::namedInstances(service, fonts), IsEmpty());
}

TEST(NamedInstances, FollowTheOrderOfTheFonts)
{
    FakeFontService service;
    const PlatformFont first = variableFont("/f/1.ttf");
    const PlatformFont second = variableFont("/f/2.ttf");
    service.files = {{"/f/1.ttf", {first}}, {"/f/2.ttf", {second}}};
    const auto instances =
        FontLibrary::namedInstances(service, std::vector{listed(second), listed(first)});
    ASSERT_THAT(instances, SizeIs(4));
    EXPECT_EQ(instances[1].filePath, "/f/2.ttf");
    EXPECT_EQ(instances[2].filePath, "/f/1.ttf");
}

TEST(NamedInstances, OfACollectionAreThoseOfTheListedFace)
{
    FakeFontService service;
    const PlatformFont variable = variableFont("/f/c.ttc");
    PlatformFont other = platformFont("", {{6, u"Other-Regular"}, {1, u"Other"}, {257, u"Wide"}});
    other.fvar = fvarTable({{257, 0xFFFF}});
    other.path = "/f/c.ttc";
    service.files["/f/c.ttc"] = {variable, other};
    const auto instances = FontLibrary::namedInstances(service, std::vector{listed(other)});
    ASSERT_THAT(instances, SizeIs(1));
    EXPECT_EQ(instances[0].postScriptName, "Other-Wide");
}

TEST(NamedInstances, AreBoundedForEachFile)
{
    // A font whose own texts take a mebibyte, which every instance repeats.
    std::vector<Instance> many(4096, Instance{257, 0xFFFF});
    PlatformFont font = variableFont("/f/var.ttf");
    font.fvar = fvarTable(many);
    FakeFontService service;
    service.files["/f/var.ttf"] = {font};
    std::vector fonts{listed(font)};
    fonts[0].licenseDescription = std::string(1U << 20U, 'x');
    const auto instances = FontLibrary::namedInstances(service, fonts);
    EXPECT_EQ(instances.size(), 63U); // 64 MiB hold one less, for the other texts
}

TEST(NamedInstances, OfOneFileAreNoMoreThan65536)
{
    static_assert(Limits::instances == 65536);
    PlatformFont font = variableFont("/f/var.ttc");
    font.fvar = fvarTable(std::vector(4096, Instance{257, 0xFFFF}));
    std::vector<PlatformFont> faces(16, font);
    FontLibrary::settle(faces, Faces::variable);
    ASSERT_THAT(faces, SizeIs(16));
    EXPECT_THAT(faces.back().settledInstances.value(), SizeIs(4096));

    // One more than that, and neither the face that has it nor a later one has any.
    faces.assign(16, font);
    PlatformFont one = font;
    one.fvar = fvarTable({{257, 0xFFFF}});
    faces.front() = one;
    faces.push_back(font);
    faces.push_back(one);
    FontLibrary::settle(faces, Faces::variable);
    ASSERT_THAT(faces, SizeIs(16));
    EXPECT_THAT(faces.front().settledInstances.value(), SizeIs(1));
    EXPECT_THAT(faces.back().settledInstances.value(), SizeIs(4096));
}

TEST(NamedInstances, OfAFaceWithoutANameTableAreNone)
{
    PlatformFont font = variableFont("/f/var.ttf");
    font.name.reset();
    std::vector faces{font};
    FontLibrary::settle(faces, Faces::variable);
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_THAT(faces.front().settledInstances.value(), IsEmpty());
}

} // namespace
} // namespace quillmark
