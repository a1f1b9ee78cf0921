// The files root (tvhost's --files): once set, the simulated host reads,
// writes and deletes documents below it only.
#include <string>

#include "sim_fixture.h"

namespace sim_test {
namespace {

class FilesRoot : public SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        std::filesystem::create_directories(folder() / "root" / "sub");
        std::u8string root = (folder() / "root").u8string();
        ASSERT_EQ(tvsim_set_files_root(std::string(root.begin(), root.end()).c_str()), 1);
    }
    void TearDown() override {
        tvsim_set_files_root(nullptr);
        SimTest::TearDown();
    }
};

TEST_F(FilesRoot, DocumentsAreSavedAndOpenedBelowTheRootOnly) {
    Handle drawing = NewDrawing();
    EXPECT_TRUE(ITavraDocument_SaveAs(drawing.get(), PathTo("root/sub/in.tvd").c_str()));
    EXPECT_FALSE(ITavraDocument_SaveAs(drawing.get(), PathTo("outside.tvd").c_str()));
    EXPECT_FALSE(ITavraDocument_SaveAs(drawing.get(), PathTo("root/../escaped.tvd").c_str()));
    EXPECT_FALSE(ITavraDocument_SaveAs(drawing.get(), PathTo("root").c_str()));  // the root itself
    EXPECT_FALSE(Exists("outside.tvd") || Exists("escaped.tvd") || Exists("outside.tvd.partial"));
    EXPECT_EQ(Take(ITavraDocument_GetFullPath(drawing.get())), PathTo("root/sub/in.tvd"));

    // A file outside is not read, not even to tell whether it is a document.
    WriteFile("outside.tvd", ReadFile("root/sub/in.tvd"));
    EXPECT_FALSE(Handle(IDocuments_Open(documents(), PathTo("outside.tvd").c_str(), 1, 0)));

    std::error_code error;
    std::filesystem::create_directory_symlink(folder(), folder() / "root" / "out", error);
    if (error) GTEST_SKIP() << "no symbolic links here: " << error.message();
    EXPECT_FALSE(ITavraDocument_SaveAs(drawing.get(), PathTo("root/out/through-link.tvd").c_str()));
    EXPECT_FALSE(Exists("through-link.tvd"));
}

TEST_F(FilesRoot, TheCurrentDirectoryFollowsTheRootAndABrokenRootIsRefused) {
    // A client that saves into the current directory stays inside the root.
    EXPECT_EQ(Take(IApplication_GetCurrentDirectory()), PathTo("root"));
    EXPECT_EQ(tvsim_set_files_root("/tmp/\xff\xfe"), 0);  // not UTF-8: the old root stays
    Handle drawing = NewDrawing();
    EXPECT_FALSE(ITavraDocument_SaveAs(drawing.get(), PathTo("outside.tvd").c_str()));

    tvsim_set_files_root(nullptr);  // lifted: any folder again
    EXPECT_EQ(Take(IApplication_GetCurrentDirectory()), std::filesystem::current_path().string<tvWChar>());
    EXPECT_TRUE(ITavraDocument_SaveAs(drawing.get(), PathTo("outside.tvd").c_str()));
}

}  // namespace
}  // namespace sim_test
