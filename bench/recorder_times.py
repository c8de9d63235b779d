"""What the recorder costs in front of a platform that does nothing: prints the times, and fails when a call costs more
than it may.

usage: recorder_times.py PROGRAM RECORDER
"""
import os
import subprocess
import sys
import tempfile

RECORDED = 2000  # nanoseconds a recorded call, beside the write itself
OFF = 10  # nanoseconds a call while nothing is recorded

program, recorder = sys.argv[1:]


def nanoseconds(**settings):
    """Of a request."""
    return float(subprocess.run([program], env={**os.environ, **settings}, check=True, capture_output=True).stdout)


without = nanoseconds()
off = nanoseconds(LD_PRELOAD=recorder)
# What is written to nowhere costs all but the write.
nowhere = nanoseconds(LD_PRELOAD=recorder, HAL_CARD_RECORDING="/dev/null")
with tempfile.TemporaryDirectory() as directory:
    path = os.path.join(directory, "card.rec")
    file = nanoseconds(LD_PRELOAD=recorder, HAL_CARD_RECORDING=path)
    with open(path) as recording:
        lines = recording.readlines()
calls = len(lines) / sum("  => " in line for line in lines)

off_call = (off - without) / calls
recorded_call = (nowhere - without) / calls
print(f"a request: {without:.0f} ns, {calls:.0f} recorded lines")
print(f"with the recorder, nothing recorded: {off:.0f} ns; {off_call:.1f} ns a call, may be {OFF}")
print(f"recorded to nowhere: {nowhere / 1000:.1f} us; {recorded_call:.0f} ns a call, may be {RECORDED}")
print(f"recorded to a file: {file / 1000:.1f} us; {(file - without) / calls:.0f} ns a call")
sys.exit(off_call > OFF or recorded_call > RECORDED)
