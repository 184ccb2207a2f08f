#pragma once

namespace port
{

// Windows-1252, both ways. The five bytes that it leaves undefined (81 8D 8F 90 9D) are the C1
// controls of the same number.

char32_t CharacterOf(char byte) noexcept;
/// False, with `byte` as it was, when the character has no place.
bool TryByteOf(char32_t character, char& byte) noexcept;

} // namespace port
