#include "Showroom/Media/HostVideo/HostSound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "Showroom/Media/HostVideo/HostScene.h"

namespace showroom::media {
namespace {

constexpr double pi = std::numbers::pi;

struct Sound {
    std::vector<float> left, right;

    explicit Sound(std::size_t count)
        : left(count)
        , right(count)
    {
    }
    // Beyond the end it goes on at the beginning.
    void add(std::size_t at, double value, double pan)
    {
        at %= left.size();
        left[at] += float(value * (1 - pan));
        right[at] += float(value * pan);
    }
};

double frequencyOf(int note) { return 440 * std::pow(2, (note - 69) / 12.0); }

// A plucked string: a few overtones that die away, the higher ones sooner.
void pluck(Sound& sound, double start, int note, double loudness, double pan)
{
    constexpr double lasts = 1.6; // seconds
    const double step = 2 * pi * frequencyOf(note) / soundRate;
    const auto first = std::size_t(start * soundRate);
    for (int i = 0; i < int(lasts * soundRate); ++i) {
        const double t = double(i) / soundRate;
        double value = 0;
        for (int overtone = 1; overtone <= 3; ++overtone)
            value += std::sin(step * overtone * i) * std::exp(-t * (2.2 + 1.8 * overtone)) / overtone;
        const double attack = std::min(t / 0.004, 1.0), release = std::min((lasts - t) / 0.05, 1.0);
        sound.add(first + std::size_t(i), value * attack * release * loudness, pan);
    }
}

void addTune(Sound& sound, double seconds)
{
    constexpr std::array<std::array<int, 4>, 4> chords { { { 60, 64, 67, 71 }, { 57, 60, 64, 67 }, { 53, 57, 60, 64 },
        { 55, 59, 62, 65 } } };
    constexpr std::array order { 0, 2, 1, 3, 2, 1, 3, 2 }; // of a chord's notes, on half beats
    constexpr int halfBeats = 192; // 24 bars of 4 beats in a minute
    const double each = seconds / halfBeats;
    for (int i = 0; i < halfBeats; ++i) {
        const auto& chord = chords[std::size_t(i / 8) % chords.size()];
        const int note = chord[std::size_t(order[std::size_t(i % 8)])];
        pluck(sound, i * each, note + (i % 16 == 13 ? 12 : 0), 0.11, i % 2 ? 0.62 : 0.38);
        if (i % 4 == 0)
            pluck(sound, i * each, chord[0] - 24, 0.17, 0.5);
    }
}

// Harmonics of a gliding pitch through two resonances that move from vowel to vowel.
void addVoice(Sound& sound, double seconds)
{
    struct Vowel {
        double low, high; // hertz
    };
    constexpr std::array<Vowel, 5> vowels { { { 800, 1200 }, { 450, 2100 }, { 320, 2500 }, { 500, 900 }, { 350, 750 } } };
    constexpr int harmonics = 16;
    constexpr int stretch = 240; // samples for which loudness and vowel stand; 5 ms
    std::array<double, harmonics> gains {};
    double phase = 0, loudness = 0;
    const auto count = sound.left.size();
    for (std::size_t i = 0; i < count; ++i) {
        const double t = double(i) / soundRate;
        if (i % stretch == 0) {
            const double place = t * 264 / seconds; // syllables
            const auto now = std::size_t(place) * 7 % vowels.size(), next = (std::size_t(place) + 1) * 7 % vowels.size();
            const double part = place - std::floor(place);
            const double low = vowels[now].low + (vowels[next].low - vowels[now].low) * part;
            const double high = vowels[now].high + (vowels[next].high - vowels[now].high) * part;
            const double pitch = 205;
            for (int h = 0; h < harmonics; ++h) {
                const double f = pitch * (h + 1), a = (f - low) / 130, b = (f - high) / 220;
                gains[std::size_t(h)] = std::exp(-a * a) + 0.5 * std::exp(-b * b) + 0.02;
            }
        }
        loudness += (talkAt(t) - loudness) * 0.001; // no clicks
        const double pitch = 205 + 26 * std::sin(2 * pi * 51 * t / seconds) + 12 * std::sin(2 * pi * 133 * t / seconds);
        phase += 2 * pi * pitch / soundRate;
        if (loudness < 0.01)
            continue;
        // sin(n x) from sin((n-1) x) and sin((n-2) x).
        const double twice = 2 * std::cos(phase);
        double before = 0, sine = std::sin(phase), value = 0;
        for (const double gain : gains) {
            value += gain * sine;
            const double following = twice * sine - before;
            before = sine;
            sine = following;
        }
        sound.add(i, value * loudness * 0.10, 0.5);
    }
}

} // namespace

std::vector<std::int16_t> makeHostSound(double seconds)
{
    Sound sound(std::size_t(std::lround(seconds * soundRate)));
    addTune(sound, seconds);
    addVoice(sound, seconds);
    std::vector<std::int16_t> samples;
    samples.reserve(sound.left.size() * 2);
    const auto sample = [](float value) { return std::int16_t(std::lround(std::clamp(value, -1.0f, 1.0f) * 32000)); };
    for (std::size_t i = 0; i < sound.left.size(); ++i) {
        samples.push_back(sample(sound.left[i]));
        samples.push_back(sample(sound.right[i]));
    }
    return samples;
}

} // namespace showroom::media
