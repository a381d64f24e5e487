"""The sources that the faults are tried on: a small application, made afresh for every attempt."""
import os
import shutil


def unit(name, components, uses, body=''):
    fields = ''.join(f'    {field}: {kind};\n' for field, kind in components)
    return (
        f'unit {name};\n\ninterface\n\nuses\n  Windows, Classes, Forms, Db, {uses};\n\n'
        f'type\n  T{name}Form = class(TForm)\n{fields}  end;\n\n'
        f'var\n  {name}Form: T{name}Form;\n\nimplementation\n\n{{$R *.dfm}}\n\n{body}end.\n'
    )


def form(name, components, caption):
    lines = [f'object {name}Form: T{name}Form', '  Left = 10', '  Top = 20', f"  Caption = '{caption}'"]
    for field, kind, properties in components:
        lines += [f'  object {field}: {kind}'] + [f'    {line}' for line in properties] + ['  end']
    return '\n'.join(lines + ['end', ''])


DATABASE = ('DB', 'TDatabase', ["DatabaseName = 'Orders'", 'LoginPrompt = False'])
QUERY = ('Q', 'TQuery', ["DatabaseName = 'Orders'", 'SQL.Strings = (', "  'select * from ORDERS')"])
TABLE = ('T', 'TTable', ["DatabaseName = 'Orders'", "TableName = 'ORDERS'"])
IB_QUERY = ('IQ', 'TIBQuery', ['SQL.Strings = (', "  'select 1 from RDB$DATABASE')"])
LABEL = ('L', 'TLabel', ['Left = 1', "Caption = 'Time'"])
ICON = (
    'I',
    'TImage',
    ['Picture.Data = {', '  ' + '0FF1C1A1' * 2048 + '}'],
)  # 8 KB, and some pages more as text
PICTURE = ('P', 'TImage', ['Picture.Data = {', '  ' + '07544269746D6170' * 20000 + '}'])


def application(large):
    """The texts of the application by their paths. Data.dfm is made binary; Clock has nothing to convert."""
    orders = [QUERY, PICTURE] if large else [QUERY, LABEL]
    members = {
        'Main': ([DATABASE, IB_QUERY], 'DBTables, IBQuery', 'Main.'),
        'Data': ([TABLE, QUERY], 'DBTables', 'Data.'),
        'Orders': (orders, 'DBTables', 'Sub/Orders.'),
        'Clock': ([LABEL], 'StdCtrls', 'Sub/Clock.'),
    }
    files = {}
    for name, (components, uses, path) in members.items():
        files[path + 'pas'] = unit(name, [(field, kind) for field, kind, _ in components], uses)
        files[path + 'dfm'] = form(name, components, f'{name} of today')
    files['App.dpr'] = (
        "program App;\n\nuses\n  Forms,\n  DBTables,\n  Main in 'Main.pas' {MainForm},\n"
        "  Data in 'Data.pas' {DataForm},\n  Orders in 'Sub\\Orders.pas' {OrdersForm},\n"
        "  Clock in 'Sub\\Clock.pas' {ClockForm};\n\nbegin\n  Application.Run;\nend.\n"
    )
    return files


def make(folder, program, large=False):
    """Writes the application below `folder`; `program(arguments)` runs kvamigrate."""
    for path, text in application(large).items():
        full = os.path.join(folder, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, 'w', newline='\r\n') as file:
            file.write(text)
        os.utime(full, (1500000000, 1500000000))
    data = os.path.join(folder, 'Data.dfm')
    program(['form', 'to-binary', '--in-place', data])
    os.utime(data, (1500000000, 1500000000))


class State:
    """Files below a folder, with what belongs to them: bytes, permissions, time of the last write."""

    def __init__(self, folder):
        self.files = {}
        self.folders = []
        for path, folders, names in os.walk(folder):
            below = os.path.relpath(path, folder)
            self.folders += [os.path.normpath(os.path.join(below, name)) for name in sorted(folders)]
            for name in sorted(names):
                full = os.path.join(path, name)
                info = os.lstat(full)
                with open(full, 'rb') as file:
                    self.files[os.path.normpath(os.path.join(below, name))] = (
                        file.read(),
                        info.st_mode & 0o7777,
                        info.st_mtime_ns,
                    )

    def bytes(self, path):
        return self.files[path][0] if path in self.files else None

    def mode(self, path):
        return self.files[path][1] if path in self.files else None

    def put(self, folder):
        """Makes `folder` hold exactly this."""
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(folder)
        for below in self.folders:
            os.makedirs(os.path.join(folder, below), exist_ok=True)
        for below, (contents, mode, time) in self.files.items():
            full = os.path.join(folder, below)
            with open(full, 'wb') as file:
                file.write(contents)
            os.chmod(full, mode)
            os.utime(full, ns=(time, time))
