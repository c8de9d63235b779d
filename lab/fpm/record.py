"""record.py ADDRESS PORT FOLDER: takes what FPMs send, connection by connection, into FOLDER/1, FOLDER/2 and so on."""
import itertools
import pathlib
import socket
import sys

listener = socket.create_server((sys.argv[1], int(sys.argv[2])))
print("ready", flush=True)
for number in itertools.count(1):
    connection, _ = listener.accept()
    with connection, (pathlib.Path(sys.argv[3]) / str(number)).open("wb", buffering=0) as stream:
        try:
            while data := connection.recv(1 << 20):
                stream.write(data)
        except OSError:
            pass  # its end is all the same
