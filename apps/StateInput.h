// StateInput: a state of moist air as a person names it on the command line or in a scene
// file: two of the properties tdb, twb, tdp, rh, d, h, pv. Relative humidity is in percent
// here (as in the design conditions); the state model takes a fraction.
#pragma once

#include <kygraph/KyStaPnt.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>

class StateInput {
public:
    enum Prop { Tdb, Twb, Tdp, RH, D, H, Pv, kPropCount };

    // The inclusive bounds a value must keep before the model is asked at all.
    struct Limits {
        double min;
        double max;
    };

    static const char* Key(Prop prop);   // "tdb", "rh", ...
    static const char* Unit(Prop prop);  // "°C", "%", ...
    static Limits LimitsOf(Prop prop);
    static std::optional<Prop> FromKey(std::string_view key);
    // "tdb+rh, tdb+twb, ...": the pairs the state model can be set by.
    static std::string SupportedPairs();
    // Whether the state model can be set by a and b (in either order).
    static bool IsSupportedPair(Prop a, Prop b);

    void Set(Prop prop, double value) { m_values[prop] = value; }
    bool Has(Prop prop) const { return m_values[prop].has_value(); }
    double Get(Prop prop) const { return m_values[prop].value_or(0.0); }
    int Count() const;

    // Sets pnt from the two given properties at the state model's current pressure and
    // formulation. False with a one-line reason when not exactly two are given, when the pair
    // is not one the model supports, or when the model refuses the state (its own text).
    bool Resolve(CKyStaPnt& pnt, std::string& error) const;

    bool operator==(const StateInput&) const = default;

private:
    std::array<std::optional<double>, kPropCount> m_values;
};
