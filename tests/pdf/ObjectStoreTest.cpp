#include "pdf/ObjectStore.h"

#include "support/PDFBytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quillmark::PDF {
namespace {

class Store : public testing::Test {
protected:
    static std::unique_ptr<QPDFFile> opened(const test::Bytes& pdf)
    {
        auto file = std::make_unique<QPDFFile>();
        EXPECT_EQ(file->open(memorySource(pdf)), std::nullopt);
        return file;
    }

    test::Bytes m_pdf = test::onePage("<</Kept[5 6 0 R]>>").object(6, "/Name").build();
    ObjectStore m_store{opened(m_pdf)};
};

TEST_F(Store, OfNoValueHasNone)
{
    EXPECT_EQ(m_store.get(Node{}, "Pages").object, nullptr);
    EXPECT_EQ(m_store.get(Node{}, 0).object, nullptr);
    EXPECT_EQ(m_store.follow(Node{}).object, nullptr);
    // Not known not to have one.
    EXPECT_TRUE(m_store.mayHaveKey(Node{}, "AP"));
    EXPECT_EQ(Node{}.kind(), Value::Kind::null);
    EXPECT_FALSE(Node{}.isStream());
}

TEST_F(Store, FollowsReferencesInDictionariesAndArrays)
{
    const Node pages = m_store.get(m_store.catalog(), "Pages");
    EXPECT_EQ(pages.owner, (Reference{2, 0}));
    const Node page = m_store.get(m_store.get(pages, "Kids"), 0);
    EXPECT_EQ(page.owner, (Reference{3, 0}));
    const Node kept = m_store.get(m_store.get(page, "Resources"), "Kept");
    EXPECT_EQ(m_store.get(kept, 0).value->integer(), 5);
    const Node name = m_store.get(kept, 1);
    EXPECT_EQ(name.owner, (Reference{6, 0}));
    EXPECT_EQ(name.object->name(*name.value), "Name");
    EXPECT_EQ(m_store.get(kept, 2).object, nullptr);
    EXPECT_EQ(m_store.get(page, 0).object, nullptr);
    EXPECT_EQ(m_store.get(kept, "Kept").object, nullptr);
}

ParsedObjectRef someObject()
{
    return std::make_shared<const ParsedObject>();
}

/// An object in the middle of those that the document has, one of another generation, and numbers
/// at and beyond the end.
const std::vector<Reference> everywhere{{7, 0}, {7, 1}, {300, 0}, {301, 0}, {0xFFFFFFFF, 0}};

TEST(KnownObjects, AreFoundByNumberAndGeneration)
{
    KnownObjects known(300);
    std::vector<ParsedObjectRef> objects;
    for (const Reference& reference : everywhere) {
        EXPECT_FALSE(known.find(reference)) << reference.number;
        objects.push_back(someObject());
        known.add(reference, objects.back());
    }
    for (std::size_t i = 0; i < everywhere.size(); ++i)
        EXPECT_EQ(known.find(everywhere[i]), objects[i]) << everywhere[i].number;
    EXPECT_FALSE(known.find({8, 0}));
    EXPECT_FALSE(known.find({8, 1}));
    EXPECT_FALSE(known.find({1000, 0}));
    known.clear();
    for (const Reference& reference : everywhere)
        EXPECT_FALSE(known.find(reference)) << reference.number;
}

TEST(KnownObjects, ForgetThoseThatAreUnreadable)
{
    KnownObjects known(300);
    for (const Reference& reference : everywhere)
        known.add(reference, nullptr);
    for (const Reference& reference : everywhere)
        EXPECT_EQ(known.find(reference), ParsedObjectRef()) << reference.number;
    const auto object = someObject();
    known.add({8, 0}, object);
    known.add({8, 1}, object);
    known.forgetUnreadable();
    for (const Reference& reference : everywhere)
        EXPECT_FALSE(known.find(reference)) << reference.number;
    EXPECT_EQ(known.find({8, 0}), object);
    EXPECT_EQ(known.find({8, 1}), object);
}

} // namespace
} // namespace quillmark::PDF
