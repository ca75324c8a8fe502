#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <utility>

#include "host/answers.h"
#include "host/outcome.h"
#include "platform/dialogs.h"

namespace pw {

// Dialogs that are worked by answers given beforehand; what they don't name stays as it is. A sheet
// goes as if a person had gone through its pages in order and left it by OK. Where an answer can't
// be given, or a page doesn't let itself be left, it is cancelled. What boxes say is told.
class AnsweredDialogs : public DialogsWrapper {
 public:
  // Icons and help come from `target`. Neither it nor the stream is owned.
  AnsweredDialogs(Dialogs& target, Answers answers, std::ostream& messages)
      : DialogsWrapper(target), answers(std::move(answers)), messages(messages) {}

  // Why a sheet was cancelled; nothing if none was.
  const std::optional<Failure>& Refusal() const { return refusal; }

  BoxAnswer ShowMessage(WindowId parent, const std::string& title, const std::string& text,
                        std::uint32_t flags) override;
  SheetAnswer ShowSheet(WindowId parent, SheetModel& sheet) override;
  std::optional<std::string> ChooseFolder(WindowId parent, const std::string& title,
                                          const std::string& startFolder,
                                          const FolderComplaint& complaint) override;

 private:
  void Work(PageModel& page, const Answer& answer);
  void Refuse(const std::string& why);

  const Answers answers;
  std::ostream& messages;
  const Answer* folder = nullptr;  // that is being chosen
  std::optional<Failure> refusal;
};

}  // namespace pw
