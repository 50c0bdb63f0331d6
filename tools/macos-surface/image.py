"""Reads what matters here out of a Mach-O image for Apple silicon."""
import struct


class Image:
    def __init__(self, path):
        with open(path, 'rb') as file:
            self.bytes = file.read()
        self.segments, self.libraries, self.places, self.symbols, self.minimum = [], [], [], {}, None
        magic, _, _, _, count, _, _, _ = struct.unpack_from('<8I', self.bytes)
        assert magic == 0xFEEDFACF, 'no 64-bit Mach-O image'
        at = 32
        for _ in range(count):
            command, size = struct.unpack_from('<2I', self.bytes, at)
            if command == 0x19:  # a segment
                self.segments.append(struct.unpack_from('<4Q', self.bytes, at + 24))
            elif command == 0xC:  # a library
                self.libraries.append(self.text_at(at + struct.unpack_from('<I', self.bytes, at + 8)[0]))
            elif command == 0x8000001C:  # where libraries are looked for
                self.places.append(self.text_at(at + struct.unpack_from('<I', self.bytes, at + 8)[0]))
            elif command == 0x32:  # the build's version
                minimum = struct.unpack_from('<I', self.bytes, at + 12)[0]
                self.minimum = f'{minimum >> 16}.{minimum >> 8 & 255}'
            elif command == 0x2:  # the symbols
                self.read_symbols(*struct.unpack_from('<3I', self.bytes, at + 8))
            at += size

    def read_symbols(self, at, count, names):
        for index in range(count):
            name, _, _, _, value = struct.unpack_from('<IBBHQ', self.bytes, at + 16 * index)
            self.symbols[self.text_at(names + name)] = value

    def text_at(self, offset):
        return self.bytes[offset:self.bytes.index(b'\0', offset)].decode()

    def offset(self, address):
        for start, size, offset, _ in self.segments:
            if start <= address < start + size:
                return address - start + offset
        raise ValueError(f'{address:#x} is nowhere in the image')

    def pointer(self, address):
        # The upper bits chain the places that the loader mends.
        return struct.unpack_from('<Q', self.bytes, self.offset(address))[0] & (1 << 36) - 1

    def protocol_methods(self, protocol):
        """The required instance methods of a protocol, in order: selectors with what crosses the wire."""
        methods = self.symbols[f'__OBJC_$_PROTOCOL_INSTANCE_METHODS_{protocol}']
        types = self.symbols[f'__OBJC_$_PROTOCOL_METHOD_TYPES_{protocol}']
        size, count = struct.unpack_from('<2I', self.bytes, self.offset(methods))
        return [(self.text_at(self.offset(self.pointer(methods + 8 + size * index))),
                 self.text_at(self.offset(self.pointer(types + 8 * index)))) for index in range(count)]
