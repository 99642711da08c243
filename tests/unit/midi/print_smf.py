"""Prints the channel messages of a Standard MIDI File as mido reads them: tick, type, channel and data."""
import sys

import mido

midi_file = mido.MidiFile(sys.argv[1])
print("header", midi_file.type, len(midi_file.tracks), midi_file.ticks_per_beat)
tick = 0
for message in midi_file.tracks[0]:
    tick += message.time
    if message.type == "set_tempo":
        print(tick, "tempo", message.tempo)
    elif not message.is_meta:
        data = message.bytes()
        print(tick, hex(data[0] & 0xF0), data[0] & 0x0F, *data[1:])
print("end", tick)
