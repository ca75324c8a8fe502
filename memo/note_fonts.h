#pragma once

#include "platform/rich_text.h"

namespace pw {

// What a note's texts are written in, when they are changed.
struct NoteFonts {
  RichTextFont content;
  RichTextFont subject;
};

// Keeps the fonts, which all notes of the process share. The first note that needs them has them
// chosen: those of the registry, or the organiser's own where it doesn't name both.
class NoteFontsUse {
 public:
  NoteFontsUse();
  NoteFontsUse(const NoteFontsUse& other);
  NoteFontsUse& operator=(const NoteFontsUse&) { return *this; }
  ~NoteFontsUse();

  static const NoteFonts& Fonts();
};

}  // namespace pw
