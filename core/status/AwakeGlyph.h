#pragma once

#include "status/TemplateImage.h"

namespace wakeloft {

/// The status glyph: by its vessel and by whether that is filled it tells the state at a glance.
struct AwakeGlyph {
    /// One mug, on a laptop, for awake mode; two for the lid-closed mode.
    enum class Vessel { mugOnLaptop, doubleMug };

    Vessel vessel = Vessel::mugOnLaptop;
    bool isFilled = false;

    /// `pointSize`: as of a font that the glyph stands beside. Empty when that is zero or less.
    [[nodiscard]] TemplateImage image(double pointSize) const;

    /// Draws into `box`, whose corners should lie on pixels, in its shape (see `aspect`).
    void draw(GlyphCanvas& canvas, GlyphBox box, double deviceScale) const;
    /// Width by height of the box that the glyph is made for.
    [[nodiscard]] double aspect() const;

    bool operator==(const AwakeGlyph&) const = default;
};

} // namespace wakeloft
