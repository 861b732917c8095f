#pragma once

namespace platform {

// How content moves along one axis when no finger holds it: it glides with a friction, or springs back to the end that it went
// beyond. Points, seconds.
class ScrollMotion {
public:
    static ScrollMotion glide(double from, double velocity, double now);
    static ScrollMotion spring(double from, double velocity, double end, double now);

    // Where it is at that time, between the ends or beyond them; false when it has come to rest. Content that does not bounce
    // stops at the end.
    bool step(double time, double low, double high, bool bounces, double& value);
    // The content was moved by so much under it.
    void shift(double by);

    static constexpr double restingVelocity = 5; // points a second, below which a glide has ended

private:
    bool springs = false;
    double start = 0; // seconds
    double from = 0; // points; of a spring its distance from the end
    double velocity = 0; // points a second
    double end = 0; // of a spring
};

// The rubber band: where content shows that was pulled to `value`, in a view of that length; and what it was pulled to when it
// shows there.
double rubberBanded(double value, double low, double high, double length);
double rubberUnbanded(double value, double low, double high, double length);

} // namespace platform
