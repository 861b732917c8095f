#pragma once

#include "Platform/CoreGraphics/Text/CTFont.h"
#include "Platform/Foundation/Bundle.h"
#include "Platform/UIKit/UIFont.h"

#include <gtest/gtest.h>

namespace platform {

// The kit's bundle of this build, beside the test executable.
inline const Bundle& kitBundle()
{
    static const Bundle bundle(joinPath(Bundle::mainBundle().bundlePath(), "MivoraUIKit.bundle"));
    return bundle;
}

// Makes Source Sans Pro known to the process, once.
inline void registerKitFonts()
{
    for (const char* name : { "SourceSansPro-Regular", "SourceSansPro-SemiBold", "SourceSansPro-Bold" }) {
        if (CTFontManager::isRegistered(name))
            continue;
        const auto bytes = kitBundle().contentsOfResource(name, "ttf");
        ASSERT_TRUE(bytes) << name;
        ASSERT_TRUE(CTFontManager::registerGraphicsFont(CTFontManager::graphicsFont(*bytes)));
    }
}

inline UIFont kitFont(const char* style, CGFloat size)
{
    registerKitFonts();
    return UIFont::named(std::string("SourceSansPro-") + style, size).value_or(UIFont::systemFont(size));
}

} // namespace platform
