"""A calibration curve the other way round: a thermistor's resistance is tabulated over temperature, and a temperature
is wanted for a resistance. The spline goes through the logarithm, in which the curve is almost straight."""
import dsp

celsius = [100, 75, 50, 25, 0, -25]  # so that the resistance rises
ohms = [680, 1480, 3600, 10000, 32650, 130000]
readings = [5000, 12500, 20000]  # to be looked up; they rise too

found = dsp.cspline(dsp.log(ohms), celsius, dsp.log(readings))
for ohm, degrees in zip(readings, found):
    print(f"{ohm:.0f} ohms: {degrees:.2f} degrees")
