// CKyStaPnt: one state of moist air, set by any pair of independent properties and then
// answering all the others.
//
// Units everywhere: temperatures °C, moisture content d in g/kg dry air, specific enthalpy h
// in kJ/kg dry air, relative humidity as a fraction (1.0 = saturated), pressures in Pa,
// specific volume in m³/kg dry air, density in kg/m³ of moist air.
//
// A setter reads the atmospheric pressure and the formulation from CKyChart::InstanceGloble()
// when it runs; the point keeps them, so later changes of the global leave it as it is.
// A setter that fails returns false, leaves the reason (Chinese text naming the inputs) in
// GetLastErrorString() and leaves the point exactly as it was. Refused: NaN or infinite
// input, a dry bulb outside -100..200 °C, negative d, pv >= B, and a relative humidity above
// 1 by more than 1e-9 plus the rounding of a d derived from h (supersaturation: the model
// describes unsaturated air only). A dry bulb derived within 1e-9 K outside the range is
// stored as the end of the range. A point that was never set answers NaN from every numeric
// getter. Error texts write numbers with the digits that tell them from the limits.
//
// The wet bulb near 0 °C. Over water (t* >= 0 °C) and over ice (t* < 0 °C) the adiabatic-
// saturation balances differ by the latent heat of fusion, so for air at t >= 0 °C whose d
// lies between d(t, t* = 0 over water) and d(t, t* -> 0 over ice) both have a root: a water
// wet bulb in 0..~0.3 °C and an ice one in ~-0.7..0 °C (the window; at 5 °C, 101325 Pa,
// 1.748..2.0 g/kg). The convention, in both directions: where a water wet bulb at or above
// 0 °C exists it is the wet bulb (the wick holds liquid water until it reaches 0 °C).
// GetTwb is therefore continuous except at the lower edge of the window, where it steps from
// the ice root up to 0 °C (by up to 0.7 K, for dry air near 9.35 °C); SetBy_TdbandTwb refuses
// an ice wet bulb whose d lies in the window, as GetTwb would answer the water one for it.
#pragma once

#include <kygraph/KyObject.h>

class KYARITHM_API CKyStaPnt : public CKyObject {
public:
    static constexpr double kMinTdb = -100.0;  // °C, lower end of the Hyland-Wexler ice equation
    static constexpr double kMaxTdb = 200.0;   // °C, upper end of the Hyland-Wexler water equation
    static constexpr double kRHTolerance = 1e-9;  // accepted excess of RH over 1 (rounding), at least
    // A d derived from the pair (never a d given as input) that is negative by less than this,
    // g/kg, is rounding and becomes 0: dry air at the end of an isenthalp or a wet bulb.
    static constexpr double kDTolerance = 1e-9;

    CKyStaPnt();
    CKyStaPnt(const CKyStaPnt& other);
    const CKyStaPnt& operator=(const CKyStaPnt& other);
    ~CKyStaPnt() override;

    CString toString() const override;  // "CKyStaPnt"
    // The reason of the last refusal, written when first asked for.
    CString GetLastErrorString() const override;
    void SetError(const CString& text, Ky::_ErrorStatus status) override;
    void SetLastErrorString(const wchar_t* text) override;

    // ---- setters: true when the state exists and was set ----
    bool SetBy_TdbandRH(double tdb, double rh);    // dry bulb °C, RH fraction
    bool SetBy_TdbandTwb(double tdb, double twb);  // dry bulb °C, wet bulb °C (twb <= tdb; see above near 0 °C)
    bool SetBy_HandD(double h, double d);          // kJ/kg, g/kg; h and d are kept exactly
    bool SetBy_HandTdb(double h, double tdb);      // kJ/kg, °C
    bool SetBy_DandTdb(double d, double tdb);      // g/kg, °C
    bool SetBy_DandRH(double d, double rh);        // g/kg, RH fraction (> 0 unless d = 0)
    bool SetBy_HandRH(double h, double rh);        // kJ/kg, RH fraction (> 0)
    bool SetBy_TdbandTdp(double tdb, double tdp);  // dry bulb °C, dew/frost point °C (tdp <= tdb)
    bool SetBy_TdbandPv(double tdb, double pv);    // dry bulb °C, vapour pressure Pa

    // ---- getters (NaN for a point that was never set) ----
    double GetTdb() const;  // dry-bulb temperature, °C
    double GetTwb() const;  // thermodynamic wet-bulb temperature, °C (over ice below 0 °C)
    double GetTdp() const;  // dew point, °C (frost point below 0.01 °C)
    double GetRH() const;   // relative humidity pv/ps, fraction (real gas: xw/xws, with f)
    double GetD() const;    // moisture content, g/kg dry air
    double GetH() const;    // specific enthalpy, kJ/kg dry air
    double GetPv() const;   // partial pressure of water vapour, Pa
    double GetPs() const;   // saturation pressure at the dry bulb, Pa (real gas: f pws = xws B)
    double GetV() const;    // specific volume, m³/kg dry air
    double GetRho() const;  // density of the moist air, kg/m³

    // Atmospheric pressure (Pa) and formulation the point was computed with.
    double GetB() const { return m_dB; }
    Ky::_Formulation GetFormulation() const { return m_eFormulation; }
    // True once a setter has succeeded.
    bool IsValid() const { return m_bValid; }

    // The display name; any text is accepted (always true).
    bool SetName(const CString& name);
    CString GetName() const { return m_strName; }

private:
    // The complete state; a setter computes a new one and assigns it only on success.
    struct State {
        double tdb;  // °C
        double d;    // g/kg
        double h;    // kJ/kg
        double pv;   // Pa
        double ps;   // Pa, saturation pressure at tdb
        double twb;  // °C when known from the setter (SetBy_TdbandTwb), else NaN
        double b;    // Pa
        Ky::_Formulation form;

        // The state of dry bulb tdb and moisture content w (kg/kg): the rest follows.
        static State AtTdbW(double tdb, double w, double b, Ky::_Formulation form);
        // The state of dry bulb tdb and vapour pressure pv (below b), with ps the saturation
        // pressure at tdb; pv is kept exactly as given, so RH = pv / ps is too.
        static State AtTdbPv(double tdb, double pv, double ps, double b, Ky::_Formulation form);
    };
    bool Commit(const State& s);
    // A refusal: its inputs and reason, in the language of the moment, are kept and the text
    // is written only when asked for. The chart's line families try setters that refuse by
    // design, a hundred a redraw, and never read why.
    struct Refusal {
        const wchar_t* sentence;
        const wchar_t* nameA;
        double a;
        const wchar_t* nameB;
        double b;
        const wchar_t* reason;  // null: no text pending
        double x, y, z;
    };
    bool Refuse(Ky::_ErrorStatus status, const wchar_t* nameA, double a, const wchar_t* nameB, double b,
                const wchar_t* reason, double x = 0.0, double y = 0.0, double z = 0.0);
    // The setters a process builds its states with, at the pressure and formulation of the
    // states it starts from rather than the current global ones.
    bool SetHD(double h, double d, double b, Ky::_Formulation form);
    bool SetDT(double d, double tdb, double b, Ky::_Formulation form);
    bool SetHRH(double h, double rh, double b, Ky::_Formulation form);
    friend class CKyProcess;

    double m_dTdb;
    double m_dD;
    double m_dH;
    double m_dPv;
    double m_dPs;
    double m_dTwbGiven;
    double m_dB;
    Ky::_Formulation m_eFormulation;
    bool m_bValid;
    CString m_strName;
    Refusal m_refusal{};

};
