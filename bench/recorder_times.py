"""Times what the recorder costs, and lays the times out for docs/performance.md."""
import os
import subprocess
import tempfile
import time

TIMES = 5  # the shortest of so many counts, as others use the machine as well


def nanoseconds(programs):
    """Of a request by program and setting, the settings in turn, so that what else the machine does hits all alike."""
    shortest = {}
    for _ in range(TIMES):
        for name, (program, settings) in programs.items():
            output = subprocess.run([program], env={**os.environ, **settings}, check=True, capture_output=True).stdout
            shortest[name] = min(float(output), shortest.get(name, float("inf")))
    return shortest


def measure(build):
    """Nanoseconds of a request, by platform and what the recorder does; and the recorded lines of one."""
    recorder = {"LD_PRELOAD": f"{build}/recorder/libhal_card_recorder.so"}
    programs = {"bare": f"{build}/bench/recorder_times", "card": f"{build}/bench/recorder_card_times"}
    with tempfile.TemporaryDirectory() as directory:
        path = f"{directory}/card.rec"
        ways = {"without": {}, "off": recorder,
                "paused": {**recorder, "HAL_CARD_RECORDING": path, "HAL_CARD_RECORDING_SIGNAL": "USR1"},
                # What is written to nowhere costs all but the write.
                "nowhere": {**recorder, "HAL_CARD_RECORDING": "/dev/null"},
                "file": {**recorder, "HAL_CARD_RECORDING": path}}
        times = nanoseconds({(platform, way): (program, settings) for platform, program in programs.items()
                             for way, settings in ways.items() if (platform, way) != ("bare", "paused")})
        with open(path) as recording:
            lines = recording.readlines()
    return times, len(lines) / sum("  => " in line for line in lines)


def measure_volume(build, requests):
    """Of so many requests: megabytes of the recording and of the process that wrote it, seconds to write and replay."""
    with tempfile.TemporaryDirectory() as directory:
        path = f"{directory}/card.rec"

        def seconds(*command, **settings):
            before, start = os.times(), time.perf_counter()
            output = subprocess.run(command, check=True, stdout=subprocess.PIPE, env={**os.environ, **settings}).stdout
            after = os.times()
            used = after.children_user + after.children_system - before.children_user - before.children_system
            return {"seconds": time.perf_counter() - start, "of the processor": used}, output

        recorded, kilobytes = seconds(f"{build}/bench/recorder_card_times", str(requests), HAL_CARD_RECORDING=path,
                                      LD_PRELOAD=f"{build}/recorder/libhal_card_recorder.so")
        size = os.path.getsize(path)
        replayed, _ = seconds(f"{build}/console/softcard-replay", path)
    return {"requests": requests, "megabytes": size / 1e6, "memory": int(kilobytes) / 1024, "recorded": recorded,
            "replayed": replayed}


def text(times, lines, volumes):
    """What docs/performance.md says."""
    ways = {"without the recorder": "without", "loaded, nothing recorded": "off", "paused by the signal": "paused",
            "recorded to nowhere": "nowhere", "recorded to a file": "file"}
    rows = ["| ns of a request | bare platform | software card |", "| --- | --: | --: |"]
    for name, way in ways.items():
        cells = []
        for platform in ("bare", "card"):
            nanoseconds, without = times.get((platform, way)), times[platform, "without"]
            more = f" (+ {nanoseconds / without - 1:.1%})" if nanoseconds and way in ("off", "paused") else ""
            cells.append(f"{nanoseconds:.0f}{more}" if nanoseconds else "")
        rows.append(f"| {name} | {' | '.join(cells)} |")
    per_line = {way: (times["bare", way] - times["bare", "without"]) / lines for way in ("nowhere", "file")}
    rows.append(f"\nA request has {lines:.0f} recorded lines: {per_line['nowhere']:.0f} ns each beside the write, "
                f"{per_line['file']:.0f} ns with it.\n")
    rows += ["| requests recorded | 10⁵ | 10⁶ |", "| --- | --: | --: |"]
    shown = {"megabytes of the recording": lambda v: v["megabytes"],
             "most megabytes of the process that is recorded": lambda v: v["memory"],
             "seconds to record them, of the processor": lambda v: v["recorded"]["of the processor"],
             "seconds to replay them, of the processor": lambda v: v["replayed"]["of the processor"],
             "seconds to replay them, by the clock": lambda v: v["replayed"]["seconds"]}
    rows += [f"| {name} | " + " | ".join(f"{of(volume):.3g}" if of(volume) < 100 else f"{of(volume):.0f}"
                                        for volume in volumes) + " |" for name, of in shown.items()]
    return "\n".join(rows)
