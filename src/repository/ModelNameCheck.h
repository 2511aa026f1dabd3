#pragma once
// The checks a processing dialog makes before it saves a new model under a name. The
// walk compares the name with every stored name byte for byte (case matters) and does not
// stop at a match. Each refusal is a warning to the user; nothing is written after one.

#include "base/MessageSink.h"
#include "repository/RepositoryRecords.h"

#include <span>
#include <string>
#include <string_view>

namespace ba {

// The two refusals' texts; dialogs word them in three ways.
struct NameRefusalTexts {
    std::string_view noName;
    std::string_view nameTaken;
};
inline constexpr NameRefusalTexts kModelNameTexts{"Error: No name specified.",
                                                  "Error: A model with this name already exists in the repository!"};
inline constexpr NameRefusalTexts kLowerCaseModelNameTexts{
    "Error: no name specified.", "Error: a model with this name already exists in the repository!"};
inline constexpr NameRefusalTexts kTemplateNameTexts{
    "Error: No name specified.", "Error: A template with this name already exists in the repository!"};

// True when the name may be saved; otherwise reports the refusal as a warning.
bool AcceptNewName(std::string_view name, std::span<const std::string> storedNames, const NameRefusalTexts& texts,
                   IMessageSink& sink);

// The CBL dialog's own check: the unbonded amplitude must exceed the bonded one.
bool AcceptCblAmplitudes(const CblModelRecord& record, IMessageSink& sink);

} // namespace ba
