// The checks a name must pass before it becomes a filter or display file name. Each failed check shows its
// own message through NBPrompt() (all of them, in order) and the verdict is returned. Board thread only.
#pragma once

#include <string>

// Filter and display names: not blank, at most 32 characters, no spaces, only letters, digits, '-' and
// '_' (checked on the lower-cased name; one message per bad character).
bool ValidateFileName(const std::string& Name);

// New display names: blank is refused silently; more than 32 characters, or any character other than
// letters, digits, '-' and '_', is refused with one message.
bool ValidateViewName(const std::string& Name);
