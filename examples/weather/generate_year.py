#!/usr/bin/env python3
"""A plausible hourly year of outdoor air for a city, as CSV (time,tdb,rh), from a small
model of its own: a seasonal and a daily cycle of dry-bulb temperature and dew point, with
weather systems passing as slowly varying random departures. Not measured data: meant for
trying the chart's data sets, density view and comfort zones on something that looks like a
real year.

    python3 generate_year.py --city shanghai > shanghai-year.csv

The same city and seed always give the same file.
"""
import argparse
import math
import random
import sys
from datetime import datetime, timedelta

# Climate of each city: annual mean and half the seasonal swing of the dry bulb and of the
# dew point (°C), the day of the year of the warmest weather, the half daily swing of the
# dry bulb in summer and winter, and how strongly weather systems move temperature and
# moisture (°C). Round numbers of the kind a climate summary gives, not station records.
CITIES = {
    "shanghai": dict(t_mean=17.0, t_amp=11.5, dp_mean=12.0, dp_amp=12.5, peak_day=205,
                     day_swing=(3.5, 3.0), weather_t=2.5, weather_dp=3.0),
    "beijing": dict(t_mean=12.5, t_amp=15.5, dp_mean=3.0, dp_amp=14.0, peak_day=200,
                    day_swing=(5.0, 5.5), weather_t=3.0, weather_dp=4.0),
    "guangzhou": dict(t_mean=22.5, t_amp=7.5, dp_mean=18.0, dp_amp=7.0, peak_day=200,
                      day_swing=(3.5, 4.0), weather_t=2.0, weather_dp=2.5),
    "harbin": dict(t_mean=4.5, t_amp=20.0, dp_mean=-2.5, dp_amp=15.5, peak_day=198,
                   day_swing=(5.0, 5.0), weather_t=3.5, weather_dp=3.5),
}


def saturation_pressure(t):
    """Vapour pressure at saturation, Pa, over water (Magnus form, Alduchov and Eskridge 1996)."""
    return 610.94 * math.exp(17.625 * t / (t + 243.04))


def year(city, seed, start_year):
    c = CITIES[city]
    rng = random.Random(f"{city}-{seed}")
    # Weather departures: first-order autoregressive over hours, a few days' memory.
    keep = math.exp(-1.0 / 60.0)
    noise = math.sqrt(1.0 - keep * keep)
    wt = wdp = 0.0
    t0 = datetime(start_year, 1, 1)
    for hour in range(8760):
        when = t0 + timedelta(hours=hour)
        day = hour / 24.0
        season = math.cos(2.0 * math.pi * (day - c["peak_day"]) / 365.0)
        summer = 0.5 * (1.0 + season)
        swing = c["day_swing"][0] * summer + c["day_swing"][1] * (1.0 - summer)
        # Warmest at 15:00, coolest near dawn.
        daily = math.cos(2.0 * math.pi * (when.hour - 15) / 24.0)
        wt = keep * wt + noise * rng.gauss(0.0, c["weather_t"])
        wdp = keep * wdp + noise * rng.gauss(0.0, c["weather_dp"])
        tdb = c["t_mean"] + c["t_amp"] * season + swing * daily + wt
        # The dew point follows the air mass, barely the hour of the day.
        dp = c["dp_mean"] + c["dp_amp"] * season + 0.3 * daily + 0.6 * wt + wdp
        dp = min(dp, tdb - 0.3 * rng.random())
        rh = 100.0 * saturation_pressure(dp) / saturation_pressure(tdb)
        yield when, tdb, min(rh, 100.0)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--city", default="shanghai", choices=sorted(CITIES))
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--year", type=int, default=2023)
    args = parser.parse_args()
    out = sys.stdout
    out.write("time,tdb,rh\n")
    for when, tdb, rh in year(args.city, args.seed, args.year):
        out.write(f"{when:%Y-%m-%dT%H:%M},{tdb:.1f},{rh:.0f}\n")


if __name__ == "__main__":
    main()
