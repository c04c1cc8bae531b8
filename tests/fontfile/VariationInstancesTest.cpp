#include "fontfile/VariationInstances.h"

#include "support/FontBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::Bytes;
using test::ByteWriter;
using testing::ElementsAre;
using testing::IsEmpty;

struct Instance {
    std::uint16_t subfamilyNameID{};
    std::uint16_t postScriptNameID{0xFFFF};
};

enum class OwnNames { stored, notStored };

/// A table with `axisCount` axes. Its positions: "axesArrayOffset", "axisCount", "axisSize",
/// "instanceCount", "instanceSize".
ByteWriter fvar(const std::vector<Instance>& instances, OwnNames ownNames = OwnNames::stored,
                std::uint16_t axisCount = 2)
{
    ByteWriter writer;
    const auto ownNameSize = static_cast<std::uint16_t>(ownNames == OwnNames::stored ? 2 : 0);
    writer.u16(1).u16(0).mark("axesArrayOffset").u16(16).u16(2);
    writer.mark("axisCount").u16(axisCount).mark("axisSize").u16(20);
    writer.mark("instanceCount").u16(static_cast<std::uint16_t>(instances.size()));
    writer.mark("instanceSize").u16(static_cast<std::uint16_t>(4 + 4 * axisCount + ownNameSize));
    writer.zeros(std::size_t{20} * axisCount);
    for (const Instance& instance : instances) {
        writer.u16(instance.subfamilyNameID).u16(0).zeros(std::size_t{4} * axisCount);
        if (ownNames == OwnNames::stored) writer.u16(instance.postScriptNameID);
    }
    return writer;
}

std::vector<VariationInstance> read(const ByteWriter& table, const NameStrings& names)
{
    return VariationInstances::read(table.build(), names);
}

NameStrings foo()
{
    return {{1, "Foo"},
            {6, "Foo-Regular"},
            {256, "Light"},
            {257, "Extra Bold"},
            {258, "FooSpecial-Light"}};
}

TEST(VariationInstances, OwnPostScriptNameIsTaken)
{
    EXPECT_THAT(read(fvar({{256, 258}}), foo()),
                ElementsAre(VariationInstance{"FooSpecial-Light", "Light", "Foo Light"}));
}

TEST(VariationInstances, AreReadInTableOrder)
{
    EXPECT_THAT(read(fvar({{257}, {256}}), foo()),
                ElementsAre(VariationInstance{"Foo-ExtraBold", "Extra Bold", "Foo Extra Bold"},
                            VariationInstance{"Foo-Light", "Light", "Foo Light"}));
}

TEST(VariationInstances, TableWithoutOwnNamesMakesThemFromTheStyle)
{
    EXPECT_THAT(read(fvar({{256}, {257}}, OwnNames::notStored), foo()),
                ElementsAre(VariationInstance{"Foo-Light", "Light", "Foo Light"},
                            VariationInstance{"Foo-ExtraBold", "Extra Bold", "Foo Extra Bold"}));
}

TEST(VariationInstances, OwnNameThatTheNameTableLacksIsMadeFromTheStyle)
{
    EXPECT_THAT(read(fvar({{256, 300}}), foo()),
                ElementsAre(VariationInstance{"Foo-Light", "Light", "Foo Light"}));
}

TEST(VariationInstances, NumberThatStandsForNoOwnNameIsNeverLookedUp)
{
    NameStrings names = foo();
    names.add(0xFFFF, "Surprise");
    EXPECT_THAT(read(fvar({{256, 0xFFFF}}), names),
                ElementsAre(VariationInstance{"Foo-Light", "Light", "Foo Light"}));
}

TEST(VariationInstances, Name25IsThePrefixBeforeName6)
{
    NameStrings names = foo();
    names.add(25, "FooVariable");
    EXPECT_THAT(read(fvar({{256}}), names),
                ElementsAre(VariationInstance{"FooVariable-Light", "Light", "Foo Light"}));
}

TEST(VariationInstances, PrefixAndStyleKeepOnlyAsciiLettersAndDigits)
{
    const NameStrings names{{25, "Foo Va\u00F1riable_2~{x}"}, {256, "Semi-Light (Caf\u00E9) 7"}};
    EXPECT_EQ(read(fvar({{256}}), names).at(0).postScriptName, "FooVariable2x-SemiLightCaf7");
}

TEST(VariationInstances, PrefixFromName6IsWhatStandsBeforeItsLastHyphen)
{
    EXPECT_EQ(read(fvar({{256}}), {{6, "PT-Sans-Regular"}, {256, "Light"}}).at(0).postScriptName,
              "PTSans-Light");
    EXPECT_EQ(read(fvar({{256}}), {{6, "Inter"}, {256, "Light"}}).at(0).postScriptName,
              "Inter-Light");
}

TEST(VariationInstances, FullNamePrefersTheTypographicFamily)
{
    NameStrings names = foo();
    names.add(16, "Foo Sans");
    EXPECT_EQ(read(fvar({{256}}), names).at(0).fullName, "Foo Sans Light");
}

TEST(VariationInstances, FullNameWithoutAFamilyStartsWithThePrefix)
{
    EXPECT_EQ(read(fvar({{256}}), {{6, "Foo-Regular"}, {256, "Light"}}).at(0).fullName,
              "Foo Light");
}

TEST(VariationInstances, FullNameWithoutFamilyAndPrefixIsTheStyle)
{
    EXPECT_THAT(read(fvar({{256, 257}}), {{256, "Light"}, {257, "Own"}}),
                ElementsAre(VariationInstance{"Own", "Light", "Light"}));
}

TEST(VariationInstances, InstanceWithoutAStyleNameIsLeftOut)
{
    EXPECT_THAT(read(fvar({{300, 258}, {256}}), foo()),
                ElementsAre(VariationInstance{"Foo-Light", "Light", "Foo Light"}));
}

TEST(VariationInstances, InstanceWithoutAnyPostScriptNameIsLeftOut)
{
    EXPECT_THAT(read(fvar({{256}}), {{1, "Foo"}, {256, "Light"}}), IsEmpty());
    EXPECT_THAT(read(fvar({{256}}), {{6, "Foo"}, {256, "\u7C97\u9AD4"}}), IsEmpty());
}

TEST(VariationInstances, StyleMayShareTheFontsOwnSubfamilyName)
{
    NameStrings names = foo();
    names.add(2, "Regular");
    EXPECT_THAT(read(fvar({{2}}), names),
                ElementsAre(VariationInstance{"Foo-Regular", "Regular", "Foo Regular"}));
}

TEST(VariationInstances, NamesAreCutAt127Characters)
{
    const std::string longStyle(200, 'x');
    const NameStrings names{{6, "Foo-Regular"}, {1, std::string(200, 'F')}, {256, longStyle}};
    EXPECT_THAT(read(fvar({{256}}), names), ElementsAre(VariationInstance{
                                                "Foo-" + std::string(123, 'x'),
                                                std::string(127, 'x'),
                                                std::string(127, 'F') + " " + std::string(127, 'x'),
                                            }));
}

TEST(VariationInstances, OwnNameIsCutAt127CharactersNotInsideOne)
{
    std::string longName;
    std::string expected;
    for (int i = 0; i < 200; ++i)
        longName += "\u00E9";
    for (int i = 0; i < 127; ++i)
        expected += "\u00E9";
    EXPECT_EQ(read(fvar({{256, 257}}), {{256, "Light"}, {257, longName}}).at(0).postScriptName,
              expected);
}

TEST(VariationInstances, TableCutInAnInstanceKeepsThoseBeforeIt)
{
    Bytes table = fvar({{256}, {257}}).build();
    table.pop_back();
    EXPECT_THAT(VariationInstances::read(table, foo()),
                ElementsAre(VariationInstance{"Foo-Light", "Light", "Foo Light"}));
}

TEST(VariationInstances, CutHeaderGivesNothing)
{
    const Bytes table = fvar({{256}}).build();
    for (std::size_t size = 0; size <= 16; ++size)
        EXPECT_THAT(VariationInstances::read(std::span(table).first(size), foo()), IsEmpty())
            << size;
}

TEST(VariationInstances, InstancesTooSmallForTheirAxesGiveNothing)
{
    auto table = fvar({{256}});
    table.overwrite16("instanceSize", 11);
    EXPECT_THAT(read(table, foo()), IsEmpty());
}

TEST(VariationInstances, SizesFromTheHeaderAreUsed)
{
    // Axis records and instances longer than today's leave room for fields that we do not know.
    ByteWriter table;
    table.u16(1).u16(0).u16(20).u16(2).u16(1).u16(24).u16(2).u16(14).zeros(4 + 24);
    table.u16(256).u16(0).zeros(4).u16(258).zeros(4);
    table.u16(257).u16(0).zeros(4).u16(0xFFFF).zeros(4);
    EXPECT_THAT(read(table, foo()),
                ElementsAre(VariationInstance{"FooSpecial-Light", "Light", "Foo Light"},
                            VariationInstance{"Foo-ExtraBold", "Extra Bold", "Foo Extra Bold"}));
}

TEST(VariationInstances, NoMoreThan4096AreRead)
{
    const std::vector<Instance> many(5000, Instance{256});
    EXPECT_EQ(read(fvar(many), foo()).size(), 4096U);
}

TEST(VariationInstances, FontWithoutAxesMayHaveInstances)
{
    EXPECT_THAT(read(fvar({{256}}, OwnNames::notStored, 0), foo()),
                ElementsAre(VariationInstance{"Foo-Light", "Light", "Foo Light"}));
}

} // namespace
} // namespace quillmark
