unit Texts;

{ All messages in one place, for the translators. The unit is kept in UTF-8
  (Petřín, Győr and Škofja Loka asked for it); nothing in here touches a
  TKVAQuery. }

interface

resourcestring
  SNameMissing = 'A member needs a name – “unknown” will do.';
  SNumberTaken = 'This number belongs to another member.';
  SDueBack = '%s: back by %s';
  SFinesBooked = '%d fines booked';

function Greeting(Hour: Integer): string;

implementation

function Greeting(Hour: Integer): string;
begin
  case Hour of
    5..9: Result := 'Dobré ráno';
    10..17: Result := 'Jó napot';
  else
    Result := 'Dober večer';
  end;
end;

end.
