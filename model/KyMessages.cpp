#include <kygraph/KyMessages.h>

#include <atomic>
#include <cwchar>
#include <string_view>

namespace {

std::atomic<bool> g_english{false};

struct Translation {
    const wchar_t* zh;
    const wchar_t* en;
};

const Translation kTable[] = {
    {L"热湿比 %g kJ/kg 不是有限数；无穷大的热湿比请按类型设置。", L"The heat-moisture ratio %g kJ/kg is not finite; set an infinite ratio by its kind."},
    {L"未知的热湿比类型 %d。", L"Unknown kind %d of heat-moisture ratio."},
    {L"计算热湿比的状态点尚未设定。", L"The states of the heat-moisture ratio are not set."},
    {L"两个状态点的大气压力（%g Pa 与 %g Pa）或计算公式不同，不能计算热湿比。", L"The two states differ in pressure (%g Pa and %g Pa) or relations; no heat-moisture ratio can be computed."},
    {L"两个状态点相同（焓 %g kJ/kg，含湿量 %g g/kg），热湿比无定义。", L"The two states are the same (h %g kJ/kg, d %g g/kg); the heat-moisture ratio is undefined."},
    {L"大气压力 %g Pa 不合法：应为 %g～%g Pa 之间的有限数，仍保持 %g Pa。", L"The pressure %g Pa is not valid: it must be a finite number within %g..%g Pa; it stays %g Pa."},
    {L"未知的湿空气计算公式 %d，仍保持原公式。", L"Unknown moist-air relations %d; the relations stay as they were."},
    {L"过程名称不能为空。", L"A process needs a name."},
    {L"过程“%ls”已存在。", L"The process \"%ls\" exists already."},
    {L"过程“%ls”没有状态点。", L"The process \"%ls\" has no states."},
    {L"过程“%ls”的第 %d 个状态点尚未设定。", L"In the process \"%ls\", state %d is not set."},
    {L"过程“%ls”的终点无法计算：%ls", L"The end of the process \"%ls\" cannot be computed: %ls"},
    {L"混合过程“%ls”的状态点尚未设定。", L"A state of the mixing \"%ls\" is not set."},
    {L"混合过程“%ls”的两个状态点大气压力或计算公式不同。", L"The two states of the mixing \"%ls\" differ in pressure or relations."},
    {L"混合过程“%ls”的风量 %g 与 %g 不合法：应为非负有限数且不全为 0。", L"The mixing \"%ls\" has flows %g and %g that are not valid: they must be finite, not negative and not both 0."},
    {L"过程“%ls”的起点尚未设定。", L"The start of the process \"%ls\" is not set."},
    {L"过程“%ls”的状态点尚未设定。", L"A state of the process \"%ls\" is not set."},
    {L"过程“%ls”的两个状态点大气压力或计算公式不同。", L"The two states of the process \"%ls\" differ in pressure or relations."},
    {L"过程“%ls”不是冷却去湿：终点（%g °C，%g g/kg）应比起点（%g °C，%g g/kg）温度低、含湿量不增。", L"The process \"%ls\" is no cooling and dehumidifying: its end (%g °C, %g g/kg) must be colder than its start (%g °C, %g g/kg) and no moister."},
    {L"过程“%ls”：加湿后的相对湿度 %g 不应低于起点的相对湿度 %g。", L"Process \"%ls\": the relative humidity %g after humidifying must not be below the start's %g."},
    {L"过程“%ls”：加湿后的含湿量 %g g/kg 应为不低于起点 %g g/kg 的有限数。", L"Process \"%ls\": the moisture content %g g/kg after humidifying must be finite and not below the start's %g g/kg."},
    {L"过程“%ls”：蒸汽温度 %g °C 超出 0～200 °C。", L"Process \"%ls\": the steam temperature %g °C is beyond 0..200 °C."},
    {L"过程“%ls”的终点参数 %g 不是有限数。", L"The process \"%ls\" has an end value %g that is not finite."},
    {L"过程“%ls”的热湿比类型 %d 未知。", L"The process \"%ls\" has an unknown heat-moisture ratio kind %d."},
    {L"过程“%ls”：热湿比为无穷大时含湿量不变，不能以含湿量为终点。", L"Process \"%ls\": an infinite heat-moisture ratio keeps d, so d cannot be its end."},
    {L"过程“%ls”：热湿比为 0 时焓不变，不能以焓为终点。", L"Process \"%ls\": a heat-moisture ratio of 0 keeps h, so h cannot be its end."},
    {L"过程“%ls”：终点焓 %g kJ/kg 与热湿比的方向（%ls）不符。", L"Process \"%ls\": the end enthalpy %g kJ/kg does not lie in the ratio's direction (%ls)."},
    {L"过程“%ls”：终点相对湿度 %g 应在 0～1 之间且大于 0。", L"Process \"%ls\": the end relative humidity %g must be above 0 and at most 1."},
    {L"过程“%ls”：含湿量 %g g/kg 时达不到相对湿度 %g。", L"Process \"%ls\": at %g g/kg the relative humidity %g cannot be reached."},
    {L"过程“%ls”：终点相对湿度 %g 与热湿比的方向（%ls）不符。", L"Process \"%ls\": the end relative humidity %g does not lie in the ratio's direction (%ls)."},
    {L"过程“%ls”：沿热湿比 %g kJ/kg 达不到相对湿度 %g。", L"Process \"%ls\": along the heat-moisture ratio %g kJ/kg the relative humidity %g cannot be reached."},
    {L"过程“%ls”的终点类型 %d 未知。", L"The process \"%ls\" has an unknown end kind %d."},
    {L"干球温度 %g °C", L"dry bulb %g °C"},
    {L"湿球温度 %g °C", L"wet bulb %g °C"},
    {L"露点温度 %g °C", L"dew point %g °C"},
    {L"相对湿度 %g", L"relative humidity %g"},
    {L"含湿量 %g g/kg", L"moisture content %g g/kg"},
    {L"焓 %g kJ/kg", L"enthalpy %g kJ/kg"},
    {L"水蒸气分压力 %g Pa", L"vapour pressure %g Pa"},
    {L"状态点参数不合法（%ls，%ls）：%ls", L"The state's parameters are not valid (%ls, %ls): %ls"},
    {L"由此得出的干球温度 %g °C 超出 -100～200 °C 的计算范围。", L"the dry bulb %g °C they give is beyond the range -100..200 °C."},
    {L"由此得出的含湿量 %g g/kg 为负。", L"the moisture content %g g/kg they give is negative."},
    {L"水蒸气分压力 %g Pa 不小于大气压力 %g Pa。", L"the vapour pressure %g Pa is not below the pressure %g Pa."},
    {L"由此得出的相对湿度 %g 超过 1 与舍入容差 %g 之和（过饱和）。", L"the relative humidity %g they give exceeds 1 plus the rounding tolerance %g (supersaturated)."},
    {L"输入值必须是有限数。", L"the inputs must be finite numbers."},
    {L"干球温度超出 -100～200 °C 的计算范围。", L"the dry bulb is beyond the range -100..200 °C."},
    {L"相对湿度 %g 为负。", L"the relative humidity %g is negative."},
    {L"相对湿度 %g 超过 1 与舍入容差 %g 之和（过饱和）。", L"the relative humidity %g exceeds 1 plus the rounding tolerance %g (supersaturated)."},
    {L"含湿量 %g g/kg 为负。", L"the moisture content %g g/kg is negative."},
    {L"湿球温度高于干球温度。", L"the wet bulb is above the dry bulb."},
    {L"湿球温度低于 -101 °C 的计算范围。", L"the wet bulb is below the range's -101 °C."},
    {L"湿球温度过低，由此得出的含湿量 %g g/kg 为负或无解。", L"the wet bulb is too low: the moisture content %g g/kg it gives is negative or has no solution."},
    {L"由此得出的含湿量 %g g/kg 不低于湿球 0 °C 时的 %g g/kg，此时湿球按水面取 0 °C 及以上，低于 0 °C 的冰面湿球在此不成立。", L"the moisture content %g g/kg they give is not below the %g g/kg of a 0 °C wet bulb; a wet bulb over water is then 0 °C or above, and one over ice below 0 °C does not hold here."},
    {L"焓低于同温度干空气的焓 %g kJ/kg，含湿量将为负。", L"the enthalpy is below that of dry air at the same temperature, %g kJ/kg; the moisture content would be negative."},
    {L"由此得出的含湿量 %g g/kg 超过该温度下的饱和含湿量 %g g/kg（过饱和）。", L"the moisture content %g g/kg they give exceeds the saturation moisture content %g g/kg at that temperature (supersaturated)."},
    {L"含湿量超过该温度下的饱和含湿量 %g g/kg（过饱和）。", L"the moisture content exceeds the saturation moisture content %g g/kg at that temperature (supersaturated)."},
    {L"含湿量或相对湿度为 0 时不能确定温度（干空气在任何温度下相对湿度都为 0）。", L"a moisture content or relative humidity of 0 fixes no temperature (dry air has a relative humidity of 0 at any temperature)."},
    {L"所需的干球温度超出 -100～200 °C 的计算范围。", L"the dry bulb it needs is beyond the range -100..200 °C."},
    {L"在 -100～200 °C 且水蒸气分压力低于大气压力的范围内无此状态。", L"there is no such state within -100..200 °C with the vapour pressure below the pressure."},
    {L"露点温度高于干球温度（过饱和）。", L"the dew point is above the dry bulb (supersaturated)."},
    {L"露点温度低于 -100 °C 的计算范围。", L"the dew point is below the range's -100 °C."},
    {L"水蒸气分压力为负。", L"the vapour pressure is negative."},
    {L"水蒸气分压力不小于大气压力 %g Pa。", L"the vapour pressure is not below the pressure %g Pa."},
};

}  // namespace

void CKyMessages::SetEnglish(bool english) { g_english.store(english); }

bool CKyMessages::IsEnglish() { return g_english.load(); }

const wchar_t* CKyMessages::English(const wchar_t* fmt)
{
    if (!fmt) return fmt;
    const std::wstring_view key(fmt);
    for (const Translation& t : kTable)
        if (key == t.zh) return t.en;
    return fmt;
}

const wchar_t* CKyMessages::Localize(const wchar_t* fmt) { return IsEnglish() ? English(fmt) : fmt; }
