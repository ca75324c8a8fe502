#include "host/formats/vcard.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "host/formats/vcard_fields.h"

namespace pw {
namespace {

using Fields = std::vector<std::pair<std::string, std::string>>;

std::string Write(const Contact& contact) {
  std::string out;
  AppendVCard(out, contact, "Friends");
  return out;
}

std::string WriteFields(const Fields& fields) {
  return Write({"1", "", fields});
}

bool HasLine(const std::string& card, const std::string& line) {
  return card.find("\r\n" + line + "\r\n") != std::string::npos;
}

std::string Card(std::string_view lines) {
  return "BEGIN:VCARD\n" + std::string(lines) + "END:VCARD\n";
}

// A foreign card's values over the names, as "name=value" lines, the empty ones left out.
std::string Fit(std::string_view lines, const std::vector<std::string>& names) {
  const VCardFile file = ReadVCards(Card(lines), names);
  std::string seen;
  for (const std::string& error : file.errors.Texts()) seen += "!" + error + "\n";
  if (file.contacts.size() != 1) return seen + "cards?";
  for (const auto& [name, value] : file.contacts.front().fields) {
    if (!value.empty()) seen.append(name).append("=").append(value).append("\n");
  }
  return seen;
}

TEST(VCardWriter, PutsKnownFieldsWhereOthersLook) {
  const Contact contact = {"17",
                           "1999-12-31T23:59:59",
                           {{"Last Name", "O'Hara; Lee"},
                            {"First Name", "Zo\xC3\xAB"},
                            {"Title", "Clerk, senior"},
                            {"Company", "Acme"},
                            {"Street", "1 Main St\r\nFloor 2"},
                            {"City", "Lund"},
                            {"Home City", "Malm\xC3\xB6"},
                            {"Work Phone", "+46 1"},
                            {"Fax (home)", "2"},
                            {"E-Mail", "z@example.com"},
                            {"Web Page", "http://example.com/a,b;c"},
                            {"Birthday", "1960-02-29"},
                            {"Shoe size", "39"},
                            {"Pets", ""},
                            {"Contact Log", "C:\\new"}}};
  EXPECT_EQ(Write(contact),
            "BEGIN:VCARD\r\n"
            "VERSION:3.0\r\n"
            "PRODID:-//Pairwise//Contacts//EN\r\n"
            "UID:pairwise-4c675180cc54b9ba-17\r\n"
            "REV:1999-12-31T23:59:59\r\n"
            "FN:Zo\xC3\xAB O'Hara\\; Lee\r\n"
            "N:O'Hara\\; Lee;Zo\xC3\xAB;;;\r\n"
            "ORG:Acme;\r\n"
            "TITLE:Clerk\\, senior\r\n"
            "ADR:;;1 Main St\\nFloor 2;Lund;;;\r\n"
            "ADR;TYPE=HOME:;;;Malm\xC3\xB6;;;\r\n"
            "TEL;TYPE=HOME,FAX:2\r\n"
            "TEL;TYPE=WORK,VOICE:+46 1\r\n"
            "EMAIL;TYPE=INTERNET:z@example.com\r\n"
            "URL:http://example.com/a,b;c\r\n"
            "BDAY:1960-02-29\r\n"
            "NOTE:C:\\\\new\r\n"
            "X-PAIRWISE-FIELDS:Last Name,First Name,Title,Company,Street,City,Home City,\r\n"
            " Work Phone,Fax (home),E-Mail,Web Page,Birthday,Shoe size,Pets,Contact Log\r\n"
            "X-PAIRWISE-FIELD;X-INDEX=13;X-NAME=Shoe size:39\r\n"
            "END:VCARD\r\n");
}

TEST(VCardWriter, AlwaysShowsAName) {
  const struct {
    Fields fields;
    const char* line;
  } kCases[] = {
      {{}, "FN:Unnamed"},
      {{{"First Name", " "}, {"Company", "\t"}}, "FN:Unnamed"},
      {{{"Company", "Acme, Inc."}, {"First Name", ""}}, "FN:Acme\\, Inc."},
      {{{"Suffix", "Jr."}, {"Prefix", "Dr."}, {"Last Name", "Lee"}, {"Middle Name", "B."}},
       "FN:Dr. B. Lee Jr."},
      {{{"Name", "The Lees"}, {"Last Name", "Lee"}}, "FN:The Lees"},
      {{{"Name", ""}, {"Last Name", "Lee"}}, "FN:Lee"},
  };
  for (const auto& test : kCases) {
    const std::string card = WriteFields(test.fields);
    EXPECT_TRUE(HasLine(card, test.line)) << card;
  }
}

TEST(VCardWriter, UidTellsFileAndRecord) {
  const auto uid = [](const char* file, const char* id) {
    std::string card;
    AppendVCard(card, {id, "", {}}, file);
    const std::size_t start = card.find("UID:");
    return card.substr(start, card.find('\r', start) - start);
  };
  EXPECT_EQ(uid("Friends", "1"), uid("Friends", "1"));
  EXPECT_NE(uid("Friends", "1"), uid("Friends", "2"));
  EXPECT_NE(uid("Friends", "1"), uid("Work", "1"));
}

TEST(VCardFields, KnowsCommonSpellings) {
  const std::map<std::string, std::vector<std::string>> kSpellings = {
      {"First Name", {"first name", "FirstName", "First-Name:", "Given name"}},
      {"Company", {"COMPANY", "Organization"}},
      {"ZIP", {"Zip Code", "Postal code", "ZIP/Postal Code", "zip"}},
      {"Home Phone", {"Phone (Home)", "home telephone", "Private Phone"}},
      {"Work Phone", {"Business Phone", "Phone, office", "Work Phone Number"}},
      {"Work ZIP", {"Business Postal Code"}},
      {"Web Page", {"Homepage", "web site", "URL"}},
      {"E-mail", {"Email", "e-mail address"}},
      {"Contact Log", {"Notes", "contact log"}},
      {"Mobile", {"Cell Phone", "mobile phone"}},
      {"Job Title", {"Title", "Position"}},
  };
  for (const auto& [label, names] : kSpellings) {
    for (const std::string& name : names) {
      const auto slot = SlotsOfFields({name}).front();
      ASSERT_TRUE(slot) << name;
      EXPECT_EQ(LabelOf(*slot), label) << name;
    }
  }
  for (const char* name : {"", "Home", "Shoe size", "Home Company", "Pr\xC3\xA9nom", "Work Note"}) {
    EXPECT_FALSE(SlotsOfFields({name}).front()) << name;
  }
}

TEST(VCardFields, TitleIsOfTheNameOnlyBesideAJobTitle) {
  const Fields fields = {{"Title", "Dr."}, {"Last Name", "Lee"}, {"Job title", "Surgeon"}};
  const std::string card = WriteFields(fields);
  EXPECT_TRUE(HasLine(card, "N:Lee;;;Dr.;")) << card;
  EXPECT_TRUE(HasLine(card, "TITLE:Surgeon")) << card;
}

TEST(VCard, OwnCardsComeBackExactly) {
  const std::string nasty[] = {
      "",           " ",
      "a,b;c\\d:e", "\\n \\, \\",
      "\"q\" 'q'",  "line\r\nbreaks\r\n",
      "\n",         "\r",
      "a\rb\nc",    std::string("\0\x01\x1B\x7F", 4),
      "\xC2\x81",   "\xE2\x82\xAC Zo\xC3\xAB",
      "\xFF\xC3",   std::string(5000, 'x'),
      "\tt\t",      "tel:1, http://a\\b",
      "19600229",   "2001-02-29",
  };
  const std::vector<std::string> names = {
      "Name",   "Last Name", "First Name", "Title",     "Company", "Department",
      "Street", "Home ZIP",  "Phone",      "Telephone", "Phone",   "Phone",
      "Email",  "E-mail",    "URL",        "Birthday",  "a:b",     "c\"d",
      "e,f",    "g;h",       "i\\j^n",     "\xC3\xA9",  "Notes",   "Contact Log"};
  std::vector<Contact> contacts;
  for (const std::string& value : nasty) {
    Contact& all = contacts.emplace_back(Contact{"-5", "2024-02-29T00:00:00", {}});
    for (const std::string& name : names) all.fields.emplace_back(name, value);
    for (const std::string& name : names) {
      contacts.push_back({"a/b %", "", {{"Phone", ""}, {name, value}, {name, "second"}}});
      contacts.push_back({"", "", {{name, value}, {value + "x", "value"}, {name, ""}}});
    }
  }
  std::string text;
  for (const Contact& contact : contacts) AppendVCard(text, contact, "Friends");
  const VCardFile file = ReadVCards(text, {"Other"});
  EXPECT_EQ(file.errors.Texts(), std::vector<std::string>());
  ASSERT_EQ(file.contacts.size(), contacts.size());
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    EXPECT_EQ(file.contacts[i], contacts[i]) << Write(contacts[i]);
  }
}

TEST(VCard, OnlyExistingTimesAreStamps) {
  const struct {
    const char* stamp;
    bool kept;
  } kCases[] = {
      {"2000-02-29T23:59:59", true},  {"1900-02-29T00:00:00", false},
      {"0000-00-00T00:00:00", false}, {"2000-13-01T00:00:00", false},
      {"2000-04-31T00:00:00", false}, {"2000-04-30T24:00:00", false},
      {"2000-04-30", false},          {"2000-04-30T00:60:00", false},
      {"2000-04-30 00:00:00", false}, {"2000-04-30T00:00:00Z", false},
  };
  for (const auto& test : kCases) {
    const std::string card = Write({"1", test.stamp, {}});
    EXPECT_EQ(card.find("REV:") != std::string::npos, test.kept) << test.stamp;
  }
}

TEST(VCardReader, FitsForeignCards) {
  const struct {
    const char* lines;
    std::vector<std::string> names;
    const char* seen;
  } kCases[] = {
      {"N:Lee;Ann,Mary;B.;Dr.;Jr.,Ph.D.\nFN:ignored\n",
       {"First Name", "Last Name", "Suffix"},
       "!line 2: no field takes \"Middle Name\"\n!line 2: no field takes \"Prefix\"\n"
       "First Name=Ann Mary\nLast Name=Lee\nSuffix=Jr. Ph.D.\n"},
      {"FN:Ann Mary Lee\nORG:Acme\n",
       {"First Name", "Last Name", "Company"},
       "First Name=Ann Mary\nLast Name=Lee\nCompany=Acme\n"},
      {"FN:Acme\nORG:Acme\n", {"First Name", "Last Name", "Company"}, "Company=Acme\n"},
      {"FN:Ann Lee\nN:Lee;Ann;;;\n", {"Name"}, "Name=Ann Lee\n"},
      {"tel;type=\"work,voice\";value=uri:tel:+1-5\nitem1.TEL;TYPE=cell:6\nTEL;HOME;FAX: 7\n",
       {"Phone", "Mobile", "Home Fax"},
       "Phone=+1-5\nMobile=6\nHome Fax=7\n"},
      {"TEL;TYPE=HOME:1\nTEL;TYPE=HOME:2\n",
       {"Work Phone", "Home Phone", "Contact Log"},
       "Home Phone=1\nContact Log=Home Phone: 2\n"},
      {"ADR;TYPE=WORK:;;1 Work Rd,Rear;;;;\nADR;TYPE=HOME:;;2 Home St;Lund;;;\n",
       {"Street", "City", "Home City", "Notes"},
       "Street=1 Work Rd, Rear\nHome City=Lund\nNotes=Home Street: 2 Home St\n"},
      {"BDAY:19600229\nNOTE:a\\nb\\, c\n",
       {"Birthday", "Note"},
       "Birthday=1960-02-29\nNote=a\r\nb, c\n"},
      {"BDAY:1960-02-29T00:00:00Z\nPHOTO;ENCODING=b:AAAA\nX-OTHER:1\n",
       {"Birthday"},
       "Birthday=1960-02-29\n"},
      {"N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:L=C3=A9e;Zo=\n=C3=AB\n"
       "ORG:M\xFCller\nNOTE;QUOTED-PRINTABLE:a=0D=0Ab=\n c\n",
       {"First Name", "Last Name", "Company", "Notes"},
       "First Name=Zo\xC3\xAB\nLast Name=L\xC3\xA9\x65\nCompany=M\xC3\xBCller\nNotes=a\r\nb c\n"},
      {"AGENT:\nBEGIN:VCARD\nFN:Nobody\nEND:VCARD\nFN:Ann\n", {"Name"}, "Name=Ann\n"},
      {"X-PAIRWISE-FIELD;X-INDEX=9;X-NAME=\"Shoe: size\":39\nX-PAIRWISE-FIELD;X-NAME=Hat:7\n",
       {"Shoe: size", "Notes"},
       "Shoe: size=39\nNotes=Hat: 7\n"},
  };
  for (const auto& test : kCases) EXPECT_EQ(Fit(test.lines, test.names), test.seen) << test.lines;
}

TEST(VCardReader, OwnCardsShowWhatOthersChanged) {
  std::string card = WriteFields({{"Phone", "555"}, {"Hat", "7"}});
  const std::string phone = "TEL;TYPE=VOICE:555\r\n";
  card.replace(card.find(phone), phone.size(), "TEL;VOICE:556\r\nTEL;CELL:557\r\n");
  const VCardFile file = ReadVCards(card, {});
  const std::vector<Contact> expected = {{"1", "", {{"Phone", "556"}, {"Hat", "7"}}}};
  EXPECT_EQ(file.contacts, expected);
  EXPECT_EQ(file.errors.Texts(), std::vector<std::string>({"line 8: no field takes \"Mobile\""}));
}

TEST(VCardReader, TakesLocalStampsOnly) {
  const auto stamp = [](const char* rev) {
    return ReadVCards(Card("FN:x\nREV:" + std::string(rev) + "\n"), {}).contacts.at(0).stamp;
  };
  EXPECT_EQ(stamp("20240131T101112"), "2024-01-31T10:11:12");
  EXPECT_EQ(stamp("2024-01-31T10:11:12"), "2024-01-31T10:11:12");
  EXPECT_EQ(stamp("20240131T101112Z"), "");
  EXPECT_EQ(stamp("20241331T101112"), "");
}

TEST(VCardReader, ReportsDamageAndKeepsTheRest) {
  const VCardFile file = ReadVCards(
      "TEL:0\n"                                    // 1
      "BEGIN:VCARD\n"                              // 2
      "FN:Ann\n"                                   // 3
      "oops\n"                                     // 4
      "N:a;b;c;d;e;f\n"                            // 5
      "BEGIN:VCARD\n"                              // 6, and the first has no end
      "X-PAIRWISE-FIELDS:Name,Hat\n"               // 7
      "X-PAIRWISE-FIELDS:Name\n"                   // 8
      "X-PAIRWISE-FIELD;X-INDEX=3:x\n"             // 9
      "X-PAIRWISE-FIELD;X-INDEX=2:7\n"             // 10
      "X-PAIRWISE-FIELD;X-INDEX=2:8\n"             // 11
      "X-PAIRWISE-FIELD;X-INDEX=1;ENCODING=b:?\n"  // 12
      "FN:Bob\n"                                   // 13
      "END:VCARD\n"                                // 14
      "END:VCARD\n"                                // 15
      "BEGIN:VCARD\nFN:Cid\n",                     // 16
      {"Name"});
  const std::vector<std::string> errors = {
      "line 1: outside of any card",
      "line 4: no colon before the value",
      "line 5: more parts than it can have",
      "line 2: a card that doesn't end",
      "line 8: a second list of the card's fields",
      "line 12: a value that isn't the base64 that it is said to be",
      "line 9: a field that isn't in the card's list",
      "line 11: a field that the card holds already",
      "line 15: the end of what didn't begin",
      "line 16: a card that doesn't end"};
  EXPECT_EQ(file.errors.Texts(), errors);
  const std::vector<Contact> expected = {{"", "", {{"Name", "Ann"}}},
                                         {"", "", {{"Name", "Bob"}, {"Hat", "7"}}},
                                         {"", "", {{"Name", "Cid"}}}};
  EXPECT_EQ(file.contacts, expected);
}

// What has no field is named once for each card; one without any text is none.
TEST(VCardReader, RemarksWhatItPassesOver) {
  const struct {
    const char* lines;
    std::vector<std::string> remarks;
  } cases[] = {
      {"VERSION:3.0\nPRODID:x\nREV:x\nUID:x\nMAILER:x\nPHOTO:\n", {}},
      {"CATEGORIES:a\nitem1.X-Skype:b\nPHOTO;ENCODING=b:AAAA\nCATEGORIES:c\n",
       {"no field is known for CATEGORIES, PHOTO, X-Skype"}},
      {"TEL;CHARSET=utf-8:1\nNOTE;CHARSET=Windows-1252:2\nORG;charset=ISO-8859-1:3\n", {}},
      {"N;CHARSET=KOI8-R:\xE1\nNOTE;CHARSET=KOI8-R:2\n",
       {"the character set KOI8-R isn't known, so that letters may come in as others"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.lines);
    const VCardFile file = ReadVCards(Card("FN:Ann\n" + std::string(each.lines)), {"Name"});
    ASSERT_EQ(file.contacts.size(), 1U);
    const auto remarks = file.remarks.find(0);
    EXPECT_EQ(remarks == file.remarks.end() ? std::vector<std::string>() : remarks->second,
              each.remarks);
  }
  std::string many;
  for (std::size_t i = 0; i < kMostContacts + 2; ++i) many += "BEGIN:VCARD\nFN:x\nEND:VCARD\n";
  const VCardFile file = ReadVCards(Card("N:;;;;\n") + many, {"Name"});
  EXPECT_EQ(file.contacts.size(), kMostContacts);
  EXPECT_EQ(file.ids.size(), kMostContacts);
  EXPECT_EQ(file.errors.Texts(),
            std::vector<std::string>({"line 1: a card that holds nothing, and is left out",
                                      "line 196609: " + std::string(kTooManyContacts),
                                      "line 196612: " + std::string(kTooManyContacts)}));
}

TEST(VCardReader, SurvivesEveryCut) {
  const std::string text =
      Write({"1", "", {{"Name", "Zo\xC3\xAB"}, {"Hat", "\x01"}, {"Phone", "1"}}});
  const std::size_t firstText = text.find("\r\nFN:") + 5;
  for (std::size_t length = 0; length < text.size() - 2; ++length) {
    const VCardFile file = ReadVCards(std::string_view(text).substr(0, length), {"Name", "Notes"});
    EXPECT_NE(file.errors.Count() == 0, length != 0) << length;
    EXPECT_EQ(file.contacts.size(), length <= firstText ? 0U : 1U) << length;
  }
}

}  // namespace
}  // namespace pw
