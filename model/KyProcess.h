// CKyProcess: an air-treatment process, a set of named paths of state points plus the list
// of all its state points, with builders for the common HVAC processes.
#pragma once

#include <kygraph/KyAS.h>
#include <kygraph/KyArray.h>
#include <kygraph/KyMap.h>
#include <kygraph/KyObject.h>
#include <kygraph/KyStaPnt.h>

using CKyStaPntArray = CKyArray<CKyStaPnt, CKyStaPnt&>;
using CKyPathMap = CKyMap<CString, const wchar_t*, CKyStaPntArray, CKyStaPntArray&>;

class KYARITHM_API CKyProcess : public CKyObject {
public:
    // What a process along a heat-moisture ratio runs to.
    enum _EnKyTarget : int {
        TARGET_D = 0,   // a moisture content, g/kg
        TARGET_H = 1,   // an enthalpy, kJ/kg
        TARGET_RH = 2,  // a relative humidity, fraction
    };

    CKyProcess();
    CKyProcess(const CKyProcess& other);
    const CKyProcess& operator=(const CKyProcess& other);
    ~CKyProcess() override;

    CString toString() const override;  // "CKyProcess"

    // Replaces the contents of paths with every named path, each an ordered array of state
    // points, in the order the paths were added. Always true.
    bool GetAllProcess(CKyPathMap& paths) const;
    // Replaces the contents of points with every distinct state point of the process (same
    // h, d, pressure and name count as one), in the order first added. Always true.
    bool GetAllPnt(CKyStaPntArray& points) const;

    int GetPathCount() const { return m_paths.GetCount(); }
    void RemoveAll();

    // Adds an explicit path. Refused (false, process unchanged) for an empty or already used
    // name, an empty array, or a point that was never set.
    bool AddPath(const CString& name, const CKyStaPntArray& points);

    // ---- builders: each adds one path named name and its points; pEnd, when given, receives
    // the computed end state. On failure nothing is added and *pEnd is untouched. ----

    // Adiabatic mixing of two streams by dry-air mass flow (any consistent unit, both >= 0,
    // not both 0): h and d are the flow-weighted means. Path a -> mix -> b. Refused when the
    // mixture would be supersaturated (fog) or the points were computed at different B.
    bool AddMixing(const CString& name, const CKyStaPnt& a, double massA, const CKyStaPnt& b,
                   double massB, CKyStaPnt* pMix = nullptr);
    // Heating or cooling at constant d to dry bulb tdbTo, °C. Path from -> end. Refused when
    // the end would be supersaturated (cooling below the dew point needs AddCoolingDehumidify).
    bool AddSensible(const CString& name, const CKyStaPnt& from, double tdbTo, CKyStaPnt* pEnd = nullptr);
    // Cooling with dehumidification from one state to a given leaving state (the coil's
    // condition line). Requires d and h not to rise and the dry bulb to fall.
    bool AddCoolingDehumidify(const CString& name, const CKyStaPnt& from, const CKyStaPnt& to);
    // Adiabatic (isenthalpic) humidification, e.g. a spray washer, to relative humidity rhTo.
    // Requires rhTo at or above the starting RH.
    bool AddAdiabaticHumidify(const CString& name, const CKyStaPnt& from, double rhTo,
                              CKyStaPnt* pEnd = nullptr);
    // Steam humidification to moisture content dTo (g/kg, >= the start's d) with steam at
    // tSteam °C (the steam's enthalpy per kg is added with the water, so the line is nearly
    // isothermal).
    bool AddSteamHumidify(const CString& name, const CKyStaPnt& from, double dTo, double tSteam = 100.0,
                          CKyStaPnt* pEnd = nullptr);
    // A process along the ratio eps from a state to a given d, h or RH. A finite eps moves
    // h by eps·Δd/1000; the infinite kinds keep d constant (and need a target other than d).
    bool AddRatioProcess(const CString& name, const CKyStaPnt& from, const CKyAS& eps, _EnKyTarget target,
                         double value, CKyStaPnt* pEnd = nullptr);

private:
    bool AddPathUnchecked(const CString& name, const CKyStaPnt* pts, int count);
    bool CheckNewName(const CString& name);

    CKyPathMap m_paths;       // name -> ordered points, in insertion order
    CKyStaPntArray m_points;  // every distinct point, in the order first added
};
