// Fields of a line, model records, the database's own data and its coded form. What kavdb makes: docs/transcripts.
#include "upsdb/upsdb.h"

#include <algorithm>
#include <tuple>

#include "tests/database_file.h"
#include "upsdb/db_check.h"
#include "upsdb/families.h"
#include "upsdb/position.h"

namespace {

constexpr char kModel[] = "Model A|2400|n|8|1|0x805C|99|1400.5|7.9|12|1|0.1|-3|1e3|POLL";

TEST(Position, TextOfAField) {
  const std::tuple<const char *, int, int, const char *> cases[] = {
      {" \"a b\" |2", 0, 1, "a b"},   {"a| \" |b", 1, 0, ""},   {"a|b|", 2, 0, "?"}, {"", 0, 0, "?"},
      {"long text", 0, 1, "long te"}, {"\" a \"", 0, 1, " a "}, {"a||b", 1, 0, "?"}, {"a|2", 1, 1, "2"},
      {"\"a\"b\"", 0, 1, "a\"b"},     {"a|\"\"|b", 1, 1, ""},   {"a|b", -1, 0, "?"}, {"\ta ", 0, 1, "\ta"},
      {"a|  |b ", 1, 0, ""},
  };
  for (const auto &[line, position, result, text] : cases) {
    char out[8] = "?";
    EXPECT_EQ(get_text_field(position, line, out), result) << line;
    EXPECT_STREQ(out, text) << line;
  }
  char out[1024];
  EXPECT_EQ(get_text_field(0, std::string(600, 'x').c_str(), out), 1);
  EXPECT_EQ(out, std::string(511, 'x'));
  EXPECT_EQ(PCountPositions("", "|") + PCountPositions("abc", "|") + PCountPositions("a|b|", "|"), 0 + 1 + 3);
}

// What a getter makes of the second field of a line; "-" for nothing, which changes nothing.
template <class Value>
std::string number_of(const std::string &field, int (*get)(int, std::string_view, Value &)) {
  Value value = 77;
  const int result = get(1, "x|" + field, value);
  EXPECT_TRUE(result == 1 || (result == 0 && value == 77)) << field;
  return result == 1 ? joined(value) : "-";
}

// Each row: a field; what it is in 32 bits, in 16 bits, as a real number and as a hexadecimal one.
TEST(Position, NumbersOfWhichHexadecimalOnesWrapAfterEightDigits) {
  const char *const cases[][2] = {
      {"12abc", "12|12|12|-"},
      {"text", "0|0|0|-"},
      {" \"-7\" ", "-7|-7|-7|-"},
      {"65537", "65537|1|65537|-"},
      {"1.75", "1|1|1.75|-"},
      {"99999999999", "2147483647|-1|1e+11|-"},
      {"  ", "-|-|-|-"},
      {" 0X805c ", "0|0|32860|32860"},
      {"0x", "0|0|0|0"},
      {"0xG1", "0|0|0|1"},
      {"0x123456789", "0|0|4.88672e+09|591751050"},
  };
  for (const auto &[field, numbers] : cases) {
    EXPECT_EQ(joined(number_of(field, PGetLongFromPosition), number_of(field, PGetShortFromPosition),
                     number_of(field, PGetDoubleFromPosition), number_of(field, PGetHexToLongFromPosition)),
              numbers);
  }
  uint8_t bytes[2] = {7, 7};  // as bytes: what the buffer holds
  EXPECT_EQ(PGetBinFromPosition(0, "0x", bytes) + PGetBinFromPosition(0, "A0B1", bytes), 0);
  EXPECT_EQ(PGetBinFromPosition(0, "0xC2D", bytes), 1);
  EXPECT_EQ(PGetBinFromPosition(1, "x|0xA0B1C2D3", bytes), 2);
  EXPECT_TRUE(bytes[0] == 0xA0 && bytes[1] == 0xB1);
}

std::string line_of(const UpsData &r) {
  const char parity = r.parity != 0 ? r.parity : '-';
  return joined(r.name, r.baud_rate, parity, r.data_bits, r.stop_bits, r.code, r.number, r.power, r.load,
                r.hold_minutes, r.recharge_hours, r.further[0], r.further[1], r.further[2], r.further[3],
                r.reserved_word);
}

TEST(Model, EveryMemberFromItsFieldAndThePowerTwice) {
  const std::tuple<const char *, int, const char *> cases[] = {
      {kModel, 1, "Model A|2400|n|8|1|-32676|99|1400.5|1400.5|7.9|12|1|0.1|-3|1000|0"},
      {"Thirteen|1|n|8|1|0x1|2|3|4|5|6|7|8", 0, "|0|-|0|0|0|0|0|0|0|0|0|0|0|0|0"},
      {"No ninth|1|n|8|1|0x1|2|3|4||6|7|8|9", 0, "No ninth|1|n|8|1|1|2|3|3|4|0|6|7|8|9|0"},
      // a code without 0x
      {"An overlong name that is cut after its 31st byte|x|n|8|1|12|2|3|4|5|6|7|8|9", 0,
       "An overlong name that is cut af|0|n|8|1|0|2|3|3|4|5|6|7|8|9|0"},
      {"\"\"|1|\"\"|8|1|0xFFFF|2|3|4|5|6|7|8|9", 1, "|1|-|8|1|-1|2|3|3|4|5|6|7|8|9|0"},
  };
  std::string text = "[UPS]\n";
  for (const auto &[line, result, filled] : cases) text += std::string(line) + "\n";
  const OpenDatabase db(text);
  EXPECT_EQ(UpsGetCountDb(), static_cast<int>(std::size(cases)));
  UpsData model;
  for (int16_t n = 0; const auto &[line, result, filled] : cases) {
    EXPECT_EQ(UpsGetAtDb(model, n++), result) << line;
    EXPECT_EQ(line_of(model), filled);
  }
  EXPECT_EQ(UpsGetAtDb(model, std::size(cases)) + UpsGetAtDb(model, -1), 0);
  EXPECT_EQ(line_of(model), line_of(UpsData{})) << "not cleared";
}

// The first four records of a section, and the last that it can have.
std::string entries(const char *section) {
  std::string all;
  for (const int n : {0, 1, 2, 3, 32767}) {
    char line[kValueBufferSize] = "";
    all += getEntryFromDb(line, section, n) ? std::string(line) + ", " : "none, ";
  }
  return all;
}

TEST(Database, LinesThatAreNoRecords) {
  const OpenDatabase db("[ups]\n; a|b\n\n# c\nfirst|1\nkey=value\nsecond|2\nhides [ the rest\nthird|3\n[X]\nlast\n");
  EXPECT_EQ(UpsGetCountDb(), 2);
  EXPECT_EQ(entries("Ups"), "first|1, second|2, none, none, none, ");
  EXPECT_EQ(entries("x"), "last, none, none, none, none, ");
}

TEST(Database, FirstLineWithANumberCountsUpToTheFirstGap) {
  const OpenDatabase db("[UPS]\n@$tmp_key$@00001=own\nzero\none\n@$TMP_KEY$@00003=three\n@$tmp_key$@4=four\n");
  EXPECT_EQ(UpsGetCountDb(), 2);
  EXPECT_EQ(entries("UPS"), "zero, own, none, three, none, ");
}

TEST(Database, IsOpenedOnceAndItsLastModelOutlivesIt) {
  OpenDatabase db(std::string("[UPS]\n") + kModel);
  UpsData model;
  EXPECT_EQ(UpsOpenDb("upstyp.ups") + UpsFindDb(model, "Model A"), 0 + 1);
  EXPECT_STREQ(model.name, "Model A");
  UpsCloseDb();
  EXPECT_EQ(UpsIsOpenDb() + UpsGetCountDb() + UpsOpenDb("none.ups") + UpsFindDb(model, "Model A"), 0);
  UpsVersionInfo info;
  UpsVariableInfo variable;
  EXPECT_EQ(UpsVersionInfoDb(&info) + UpsVersionInfoDb(nullptr) + UpsGetAtDbVarInfoFromVarID(variable, 1), 0);
  db.open(std::string("[UPS]\nModel B|1\n") + kModel);
  EXPECT_EQ(findEntryInDb("unknown"), -1);
  EXPECT_EQ(findEntryInDb("MODEL A"), 0) << "not read again";
  EXPECT_EQ(findEntryInDb("Model B"), 0);
  EXPECT_EQ(findEntryInDb("Model A"), 1);
  EXPECT_EQ(countDBEntries(nullptr), 0);
  reset_upsdb();
  EXPECT_EQ(findEntryInDb("Model A"), -1) << "not forgotten";
}

TEST(Version, TextThatFillsItsBufferHasNoTerminatorAndOemZeroIsOne) {
  OpenDatabase db("[Custom]\nversion=2.4.0.7\nFILEDATE = 12.05.2024\n[vendor]\nOemId=131073\n");
  UpsVersionInfo info;
  int16_t oem = 7;
  EXPECT_EQ(UpsVersionInfoDb(&info), 1);
  EXPECT_TRUE(info.oem == 131073 && info.version.number[0] == 2 && info.version.number[3] == 7);
  UpsVersion parsed;
  char text[12] = "";
  EXPECT_EQ(UpsParseVersionInfoStr(&parsed, " 7.-3a.9"), 1);
  EXPECT_EQ(UpsBuildVersionInfoStr(text, sizeof text, &parsed), 1);
  EXPECT_STREQ(text, "7.-3.0.0");
  EXPECT_EQ(UpsBuildVersionInfoStr(text, sizeof text, nullptr) + UpsBuildVersionInfoStr(nullptr, 9, &parsed), 0);
  EXPECT_TRUE(text[0] == '\0' && UpsParseVersionInfoStr(nullptr, "1") + UpsParseVersionInfoStr(&parsed, nullptr) == 0);
  EXPECT_EQ(UpsIsCompatibleVersionInfo(&parsed, &info.version) + UpsIsCompatibleVersionInfo(&parsed, nullptr), 0);
  EXPECT_EQ(UpsIsCompatibleVersionInfo(&info.version, &info.version), 1);
  EXPECT_EQ(UpsParseVersionInfoStr(&parsed, "1.0"), 1);
  EXPECT_EQ(UpsIsCompatibleVersionInfo(&info.version, &parsed), 0);
  std::fill_n(text, 11, '?');
  EXPECT_EQ(UpsVersionNrDb(text, 7), 1);
  EXPECT_STREQ(text, "2.4.0.7????");
  EXPECT_EQ(UpsFileDateDb(text, sizeof text), 1);
  EXPECT_STREQ(text, "12.05.2024");
  for (const auto &[vendor, result, number] :
       {std::tuple{"OEMID=0", 1, 1}, {"OEMID=131074", 1, 2}, {"other=3", 0, 7}}) {
    UpsCloseDb();
    db.open(std::string("[VENDOR]\n") + vendor);
    EXPECT_EQ(UpsOEMIdDb(oem = 7), result);
    EXPECT_EQ(oem, number);
    EXPECT_EQ(UpsFileDateDb(text, sizeof text), 0);
  }
}

TEST(CodedForm, RefusesWhatWouldNotComeBack) {
  std::string coded = "?";
  std::vector<Finding> findings;
  EXPECT_EQ(code_text("a\nb\r\n", coded, findings) + code_text(std::string(1022, 'x') + "\n", coded, findings), 0);
  EXPECT_EQ(code_text(std::string_view("a\n\nb\0c", 6), coded, findings), 0);
  EXPECT_EQ(findings, (std::vector<Finding>{{2, "", "line", "line ends in a carriage return"},
                                            {1, "", "line", "line is longer than 1022 bytes"},
                                            {3, "", "line", "line holds a NUL"}}));
  EXPECT_EQ(decode_text("[UPS]\n", coded), 0) << "a text is no coded file";
  EXPECT_EQ(coded, "?");
  for (const std::string &source : {std::string(), std::string("\n\n"), std::string("a"), std::string(1022, 'x')}) {
    std::string text = "?";
    EXPECT_EQ(code_text(source, coded, findings) + decode_text(coded, text), 2);
    EXPECT_EQ(text, source);
  }
}

TEST(Check, CountsTheRecordsOfASection) {
  const std::string title = "[BYPASS_LIB]\n";
  std::string text = sample_text(), records;
  const size_t begin = text.find(title) + title.size();
  for (int n = 0; n < 32768; ++n) records += "pop\n";
  const int last = static_cast<int>(lines_of(text.substr(0, begin)).size()) + 32768;
  const std::string fault = "is never read: a section holds at most 32767 records";
  EXPECT_EQ(check_database(text.insert(begin, records)), (std::vector<Finding>{{last, "BYPASS_LIB", "line", fault}}));
}

}  // namespace
