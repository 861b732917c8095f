#pragma once

namespace platform {

// Letters, digits, marks on them and the underscore: what words are made of. Any thread.
bool isWordCharacter(char32_t codePoint);

} // namespace platform
