// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <string>
#include <vector>

namespace ravlo
{

// A picture as simple shapes, in pixels from its top left corner; the window draws them in the colours of the
// desktop.
struct Picture
{
    enum class Ink
    {
        Text,
        Faint, // axes
        Bar,
        Bad,        // too few plays, a gap too small
        Set,        // the separation that is set; the mean
        Attainable, // the separation that can be kept
        Heat1,      // the lightest
        Heat2,
        Heat3,
        Heat4,
        Chosen, // marks the row that is selected in the table
    };
    enum class Anchor
    {
        Left,
        Middle,
        Right,
    };
    struct Box
    {
        Ink eInk;
        int lLeft;
        int lTop;
        int lWidth;
        int lHeight;

        friend bool operator==(const Box&, const Box&) = default;
    };
    struct Text
    {
        Ink eInk;
        Anchor eAnchor;
        int lAt; // the text's left end, middle or right end
        int lTop;
        std::wstring sText;

        friend bool operator==(const Text&, const Text&) = default;
    };
    struct Dot
    {
        Ink eInk;
        int lX; // its middle
        int lY;
        int lRadius;

        friend bool operator==(const Dot&, const Dot&) = default;
    };

    std::vector<Box> colBoxes; // drawn first, then the dots and the texts
    std::vector<Dot> colDots;
    std::vector<Text> colTexts;
};

// The room for a picture, in pixels.
struct PictureRoom
{
    int lWidth = 0;
    int lHeight = 0;
    int lLine = 16;     // the height of a line of text
    int lCharacter = 7; // the mean width of a character
    double dScale = 1;  // 2 at 200 %

    int Scaled(int lAt96) const noexcept { return static_cast<int>(std::lround(lAt96 * dScale)); }
};

} // namespace ravlo
