#include "host/sample_memos.h"

#include <iterator>

#include "base/codepage.h"
#include "framework/memo_record.h"

namespace pw {

const std::vector<std::string> kSampleSections = {"Notebook", "Workshop"};

const SampleMemo kSampleMemos[] = {
    {0, "Villaseca, what to bring",
     "Walking shoes\r\nThe green lamp\r\nPhrase book\r\n\r\nThe ferry takes no cheques."},
    {0, "Words I keep forgetting",
     "l\u2019embarcadère\tthe landing stage\r\ndie Mole\tthe pier\r\nkölvatten\twake (of a ship)"},
    {0, "Wine of the harbour inn",
     "The white one, \u20ac3.40 the carafe. Ask for the corner table."},
    {1, "Tower clock",
     "Loses four minutes a week when it is warm.\r\n\r\nGünther thinks that the pendulum\u2019s "
     "spring\r\nis from 1890 and wants replacing \u2013 he has one."},
    {1, "Paste for bookbinding",
     "1 part wheat starch\r\n5 parts water\r\nStir {slowly} \\ until it is clear; keeps a week."},
};
const std::size_t kSampleMemoCount = std::size(kSampleMemos);

PWRecord RecordOf(const SampleMemo& memo) {
  PWRecord record;
  PWMemoRecord note(&record);
  note.Subject(Utf8ToCodePageLossy(memo.subject).c_str(), PWRecord::kWholeText);
  note.Body(Utf8ToCodePageLossy(memo.body).c_str(), PWRecord::kWholeText);
  return record;
}

}  // namespace pw
