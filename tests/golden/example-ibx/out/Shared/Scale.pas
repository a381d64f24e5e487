unit Scale;

{ The weighbridge on a serial line: seven digits, a sign and a status letter,
  eight times a second. Nothing of the database in here. }

interface

uses
  Windows, SysUtils, Classes;

type
  TScale = class
  private
    FPort: THandle;
    FWeight: Double;
    FSteady: Boolean;
    procedure Poll;
    function GetWeight: Double;
  public
    constructor Create(const PortName: string);
    destructor Destroy; override;
    property Weight: Double read GetWeight;
    property Steady: Boolean read FSteady;
  end;

implementation

const
  Quote = '''';

constructor TScale.Create(const PortName: string);
begin
  FPort := CreateFile(PChar(PortName), GENERIC_READ, 0, nil, OPEN_EXISTING,
    0, 0);
  if FPort = INVALID_HANDLE_VALUE then
    raise Exception.Create('No scale at ' + Quote + PortName + Quote);
end;

destructor TScale.Destroy;
begin
  if FPort <> INVALID_HANDLE_VALUE then
    CloseHandle(FPort);
  inherited Destroy;
end;

procedure TScale.Poll;
var
  Line: array[0..15] of Char;
  Got: DWORD;
begin
  if ReadFile(FPort, Line, SizeOf(Line), Got, nil) and (Got >= 10) then
  begin
    FSteady := Line[8] = 'S';
    FWeight := StrToIntDef(Trim(Copy(Line, 1, 8)), 0) / 10;
  end;
end;

function TScale.GetWeight: Double;
begin
  Poll;
  Result := FWeight;
end;

end.
