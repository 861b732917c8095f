#include "Platform/Foundation/WordCharacters.h"

#include <glib.h>

namespace platform {

bool isWordCharacter(char32_t codePoint)
{
    return codePoint == '_' || g_unichar_isalnum(codePoint) || g_unichar_ismark(codePoint);
}

} // namespace platform
