#include "Tests/Repository/IncludeRules.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

namespace fs = std::filesystem;

TEST(IncludeRules, holdInEverySourceFile)
{
    const fs::path root = MIVORA_SOURCE_DIR;
    const auto exists = [&root](const std::string& path) { return fs::is_regular_file(root / path); };
    int checked = 0;
    for (const char* folder : { "Platform", "Service", "Main", "UI", "Showroom", "Examples", "Benchmarks", "Tests" }) {
        if (!fs::exists(root / folder))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const auto extension = entry.path().extension();
            if (extension != ".h" && extension != ".cpp")
                continue;
            const auto path = entry.path().lexically_relative(root).generic_string();
            for (const std::string& fault : repository::includeFaults(path, test::contentOf(entry.path()), exists))
                ADD_FAILURE() << fault;
            ++checked;
        }
    }
    EXPECT_GT(checked, 3) << "no source files below " << root;
}

TEST(IncludeRules, tellAGoodIncludeFromABadOne)
{
    struct Case {
        const char* why;
        const char* path;
        const char* text;
        bool good;
    };
    const Case cases[] = {
        { "downwards", "Platform/UIKit/UIView.h", "#include \"Platform/QuartzCore/CALayer.h\"", true },
        { "upwards", "Platform/QuartzCore/CALayer.h", "#include \"Platform/UIKit/UIView.h\"", false },
        { "upwards into a box within a box", "Platform/UIKit/Layout/Solver.h", "#include \"Platform/UIKit/UIView.h\"", false },
        { "from the platform to the kit", "Platform/UIKit/UIView.cpp", "#include \"Main/MivoraUI.h\"", false },
        { "extensions lie below the facade", "Main/MivoraUI.h", "#include \"UI/Extensions/MVSetter.h\"", true },
        { "the facade lies below the screens", "UI/Extensions/MVSetter.h", "#include \"Main/MivoraUI.h\"", false },
        { "one box in two folders", "UI/Extensions/MVSetter.h", "#include \"UI/Utils/MVFont.h\"", true },
        { "by a path from its own folder", "Platform/QuartzCore/CALayer.h", "#include \"../UIKit/UIView.h\"", false },
        { "written with blanks", "Platform/QuartzCore/CALayer.h", "  #  include  \"Platform/UIKit/UIView.h\"", false },
        { "the standard library", "UI/Extensions/MVSetter.h", "#include <memory>", true },
        { "a library in a header", "Platform/QuartzCore/CALayer.h", "#include <pixman.h>", false },
        { "a quoted library in a header", "Platform/QuartzCore/CALayer.h", "#include \"SDL.h\"", false },
        { "a library in a platform file", "Platform/QuartzCore/Pixels.cpp", "#include <pixman.h>", true },
        { "a library in a file of the kit", "UI/Utils/Currency.cpp", "#include <unicode/numfmt.h>", false },
        { "a library in a header of the sample host", "Showroom/Shop.h", "#include <nlohmann/json.hpp>", false },
        { "own header first", "UI/Utils/MVFont.cpp", "#include \"UI/Utils/MVFont.h\"\n#include <memory>", true },
        { "own header second", "UI/Utils/MVFont.cpp", "#include <memory>\n#include \"UI/Utils/MVFont.h\"", false },
        { "a folder that nobody placed", "Extras/Thing.h", "", false },
    };
    const auto exists = [](const std::string& path) {
        const char* files[] = { "Platform/UIKit/UIView.h", "Platform/QuartzCore/CALayer.h", "Main/MivoraUI.h",
            "UI/Extensions/MVSetter.h", "UI/Utils/MVFont.h" };
        return std::find(std::begin(files), std::end(files), path) != std::end(files);
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(repository::includeFaults(c.path, c.text, exists).empty(), c.good);
    }
}

} // namespace
