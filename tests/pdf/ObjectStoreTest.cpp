#include "pdf/ObjectStore.h"

#include "support/PDFBytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

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

} // namespace
} // namespace quillmark::PDF
