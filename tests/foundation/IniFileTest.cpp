#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "foundation/Io/ZQIniFile.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

class IniFileTest : public ::testing::Test {
protected:
    IniFileTest() { m_ini.SetSection("s"); }

    void Put(const std::string& bytes) { WriteBytes(m_path, bytes); }
    std::string Bytes() const { return ReadBytes(m_path).value_or("(no file)"); }
    std::string Value(const char* key) {
        CZQString value;
        m_ini.ReadString(key, value);
        return value.str();
    }

    TempFolder m_folder;
    std::string m_path = m_folder.File("test.ini");
    CZQIniFile m_ini{m_path};
};

}  // namespace

TEST_F(IniFileTest, ReadsValues) {
    const std::string longest(4094, 'x');
    Put("[s]\r\ntext= \"a b\" "
        "\r\nempty=\r\nsentinel=EmpTySTRINg\r\npart=Emp\r\nnot=emp\r\nlonger=EmpTySTRINg2\r\n"
        "max=" +
        longest + "\r\nover=" + longest + "x\r\n");
    EXPECT_EQ(Value("text"), "a b");
    EXPECT_EQ(Value("sentinel"), "");
    EXPECT_EQ(Value("part"), "") << "a leading part of the sentinel counts as the sentinel";
    EXPECT_EQ(Value("not"), "emp");
    EXPECT_EQ(Value("longer"), "EmpTySTRINg2");
    EXPECT_EQ(Value("max"), longest);
    EXPECT_ZQ_ERROR(Value("over"), ZQ_ERR_INI_VALUE_TOO_LONG);
    EXPECT_ZQ_ERROR(Value("empty"), ZQ_ERR_INI_KEY_MISSING);
    const auto missing = ThrownBy([&] { Value("nope"); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->GetErrorNumber(), ZQ_ERR_INI_KEY_MISSING);
    EXPECT_EQ(missing->GetExtraText(), CZQString("Section=s; Key=nope; File=" + m_path));
    EXPECT_TRUE(m_ini.KeyExists("sentinel"));
    EXPECT_FALSE(m_ini.KeyExists("empty"));
}

TEST_F(IniFileTest, ReadsNumbersAndBooleans) {
    struct Row {
        const char* value;
        std::int32_t number;
        std::uint8_t byte;
        int boolean;  // 0, 1, or -1 for an error
    };
    constexpr Row kRows[] = {
        {"0", 0, 0, 0},   {"1", 1, 1, 1},       {"TrUe", 0, 0, 1},     {"FALSE", 0, 0, 0},
        {"01", 1, 1, -1}, {"-7x", -7, 249, -1}, {"\"  1\"", 1, 1, -1}, {"2147483647", 2147483647, 255, -1}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.value);
        m_ini.WriteVerbatim("k", row.value);
        std::int32_t number = -1;
        std::uint8_t byte = 1;
        bool boolean = false;
        m_ini.ReadInt("k", number);
        EXPECT_EQ(number, row.number);
        m_ini.ReadLong("k", number);
        EXPECT_EQ(number, row.number);
        m_ini.ReadByte("k", byte);
        EXPECT_EQ(byte, row.byte);
        EXPECT_EQ(ErrorOf([&] { m_ini.ReadBool("k", boolean); }), row.boolean < 0 ? ZQ_ERR_INI_BAD_BOOL : 0);
        EXPECT_TRUE(row.boolean < 0 || boolean == (row.boolean == 1));
    }
    const auto thrown = ThrownBy([&] { (void)m_ini.String2Bool("", "key"); });
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->GetExtraText(), CZQString("Section=s; Key=key; Value=; File=" + m_path));
}

TEST_F(IniFileTest, WritesValues) {
    m_ini.WriteString("text", "  a b ");
    m_ini.WriteString("blank", "   ");
    m_ini.WriteString("tab", "\t");
    m_ini.WriteInt("int", -5);
    m_ini.WriteUInt8("byte", 255);
    m_ini.WriteUInt32("word", 4294967295U);
    m_ini.WriteStringArray("list", {"a", "b"}, ';');
    m_ini.WriteStringArray("none", {}, ';');
    m_ini.WriteVerbatim("empty", "");
    EXPECT_EQ(Bytes(),
              "[s]\r\ntext=a b\r\nblank=EmpTySTRINg\r\ntab=\t\r\nint=-5\r\nbyte=255\r\n"
              "word=4294967295\r\nlist=a;b;\r\nnone=EmpTySTRINg\r\nempty=\r\n");
    CZQStringArray list;
    m_ini.ReadStringArray("list", list, ';');
    EXPECT_EQ(list.Join('|'), "a|b|");
    m_ini.ReadStringArray("none", list, ';');
    EXPECT_EQ(list.GetSize(), 0U);
    m_ini.WriteVerbatim("list", "a ; ;\tb");
    m_ini.ReadStringArray("list", list, ';');
    EXPECT_EQ(list.Join('|'), "a||b|");
}

TEST_F(IniFileTest, DefaultsAreWrittenBackUnlessUnwanted) {
    const CZQString text = " d ";
    const CZQString empty;
    EXPECT_EQ(m_ini.ReadFromFile("a", &text, true), " d ");
    EXPECT_FALSE(std::filesystem::exists(m_path));
    EXPECT_EQ(m_ini.ReadFromFile("a", &text, false), " d ");
    EXPECT_EQ(m_ini.ReadFromFile("b", &empty, false), "");
    EXPECT_EQ(Bytes(), "[s]\r\na=d\r\nb=EmpTySTRINg\r\n");
    EXPECT_EQ(m_ini.ReadFromFile("a", &empty, false), "d");
}

TEST_F(IniFileTest, FailingWritesSayWhyAndLeaveTheObjectUsable) {
    const CZQString text = "d";
    CZQIniFile ini(m_folder.File("missing/test.ini"));
    ini.SetSection("s");
    const auto defaultWrite = ThrownBy([&] { ini.ReadFromFile("k", &text, false); });
    ASSERT_TRUE(defaultWrite);
    EXPECT_EQ(defaultWrite->GetErrorNumber(), ZQ_ERR_INI_DEFAULT_WRITE);
    const CZQException* const write = defaultWrite->GetInnerException();
    ASSERT_NE(write, nullptr);
    EXPECT_EQ(write->GetErrorNumber(), ZQ_ERR_INI_WRITE);
    EXPECT_TRUE(
        write->GetExtraText().Contains("Section=s; Key=k; File=" + ini.GetFileName().str() + "; SysError ("));
    EXPECT_EQ(write->GetCatchLocation().GetFunction(), "CZQIniFile::ReadFromFile");
    EXPECT_EQ(ini.ReadFromFile("k", &text, true), "d");

    std::filesystem::create_directory(m_folder.File("missing"));
    ini.WriteString("k", "v");
    EXPECT_EQ(ReadBytes(ini.GetFileName().str()), "[s]\r\nk=v\r\n");
}

TEST_F(IniFileTest, ChangesByOthersAreSeenAtOnce) {
    Put("[s]\r\nk=1\r\n");
    EXPECT_EQ(Value("k"), "1");
    for (char digit = '2'; digit <= '9'; ++digit) {
        Put(std::string("[s]\r\nk=") + digit + "\r\n");
        ASSERT_EQ(Value("k"), std::string(1, digit)) << "same size, straight after";
    }
    const std::string other = m_folder.File("other.ini");
    WriteBytes(other, "[s]\r\nk=moved\r\n");
    std::filesystem::rename(other, m_path);
    EXPECT_EQ(Value("k"), "moved");

    const auto stamp = std::filesystem::last_write_time(m_path) - std::chrono::hours(1);
    std::filesystem::last_write_time(m_path, stamp);
    EXPECT_EQ(Value("k"), "moved");
    Put("[s]\r\nk=MOVED\r\n");
    std::filesystem::last_write_time(m_path, stamp);
    EXPECT_EQ(Value("k"), "MOVED") << "the time stamp was forced back";

    std::filesystem::remove(m_path);
    EXPECT_ZQ_ERROR(Value("k"), ZQ_ERR_INI_KEY_MISSING);
    m_ini.WriteString("n", "1");
    EXPECT_EQ(Bytes(), "[s]\r\nn=1\r\n");
}

TEST_F(IniFileTest, OwnWritesKeepWhatOthersWrote) {
    CZQIniFile other(m_path);  // no section chosen
    for (int i = 0; i < 20; ++i) {
        m_ini.WriteInt("mine", i);
        other.WriteInt("theirs", i);
    }
    EXPECT_EQ(Bytes(), "[s]\r\nmine=19\r\n[not defined]\r\ntheirs=19\r\n");
    EXPECT_EQ(Value("mine"), "19");
}

TEST_F(IniFileTest, ABatchIsOneSnapshotWrittenOnce) {
    Put("[s]\r\nk=1\r\n");
    {
        CZQIniBatch batch(m_ini);
        m_ini.WriteString("k", "2");
        m_ini.WriteString("n", "3");
        EXPECT_EQ(Value("k"), "2");
        EXPECT_EQ(Bytes(), "[s]\r\nk=1\r\n");
        batch.Commit();
        EXPECT_EQ(Bytes(), "[s]\r\nk=2\r\nn=3\r\n");
        Put("[s]\r\nk=4\r\n");
        EXPECT_EQ(Value("k"), "2");
        batch.Commit();
        EXPECT_EQ(Bytes(), "[s]\r\nk=4\r\n") << "there was nothing to write";
    }
    EXPECT_EQ(Value("k"), "4");
    {
        const CZQIniBatch batch(m_ini);
        m_ini.WriteString("k", "dropped");
    }
    EXPECT_EQ(Value("k"), "4");
    EXPECT_EQ(Bytes(), "[s]\r\nk=4\r\n");
}

TEST_F(IniFileTest, ABatchThatCannotBeWrittenFailsAtCommit) {
    CZQIniFile ini(m_folder.File("missing/test.ini"));
    ini.SetSection("s");
    CZQIniBatch batch(ini);
    ini.WriteString("k", "v");
    EXPECT_ZQ_ERROR(batch.Commit(), ZQ_ERR_INI_WRITE);
    CZQIniFile folder(m_folder.Path().string());
    const CZQIniBatch other(folder);
    EXPECT_ZQ_ERROR(folder.WriteString("k", "v"), ZQ_ERR_INI_WRITE) << "a folder can't become a file";
}

}  // namespace ZQAPI::test
