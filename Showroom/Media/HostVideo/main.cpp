// Films the sample shop's host: showroom_host_video OBJECTS-FOLDER OUTPUT.mp4. The folder holds the objects as SVG. Equal input
// gives equal films.

#include <exception>
#include <filesystem>
#include <iostream>

#include "Showroom/Media/HostVideo/FilmFile.h"
#include "Showroom/Media/HostVideo/HostScene.h"
#include "Showroom/Media/HostVideo/HostSound.h"

int main(int count, char** arguments)
{
    using namespace showroom::media;
    if (count != 3) {
        std::cerr << "usage: showroom_host_video OBJECTS-FOLDER OUTPUT.mp4\n";
        return 2;
    }
    try {
        constexpr int bitsPerSecond = 700'000; // the room stands still; more shows no better
        const std::filesystem::path output = arguments[2];
        std::filesystem::create_directories(output.parent_path());
        // Under another name until it is whole.
        auto unfinished = output;
        unfinished += ".part";
        HostScene scene(arguments[1]);
        FilmFile film(unfinished.string(),
            { HostScene::width, HostScene::height, HostScene::framesPerSecond, bitsPerSecond, soundRate },
            makeHostSound(double(HostScene::frameCount) / HostScene::framesPerSecond));
        for (int number = 0; number < HostScene::frameCount; ++number)
            film.add(scene.draw(number));
        film.finish();
        std::filesystem::rename(unfinished, output);
    } catch (const std::exception& error) {
        std::cerr << "showroom_host_video: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
