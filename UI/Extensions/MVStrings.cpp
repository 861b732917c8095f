#include "UI/Extensions/MVStrings.h"

#include "Platform/Foundation/Data.h"
#include "Platform/Foundation/Text.h"

namespace mv {

std::optional<std::string> base64String(std::string_view text)
{
    return isValidUTF8(text) ? std::optional(base64(dataFromText(text))) : std::nullopt;
}

} // namespace mv
