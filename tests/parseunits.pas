{ Parses Pascal units with Free Pascal's own parser, fcl-passrc.

    parseunits < LIST

  reads the names of files, one a line, and writes a line for each: "ok", or the error. }
{$mode objfpc}{$H+}
program parseunits;

uses
  Classes, SysUtils, PScanner, PParser, PasTree;

type
  TTree = class(TPasTreeContainer)
  public
    function CreateElement(AClass: TPTreeElement; const AName: string; AParent: TPasElement;
      AVisibility: TPasMemberVisibility; const ASourceFilename: string;
      ASourceLinenumber: Integer): TPasElement; override;
    function FindElement(const AName: string): TPasElement; override;
  end;

function TTree.CreateElement(AClass: TPTreeElement; const AName: string; AParent: TPasElement;
  AVisibility: TPasMemberVisibility; const ASourceFilename: string; ASourceLinenumber: Integer): TPasElement;
begin
  Result := AClass.Create(AName, AParent);
  Result.Visibility := AVisibility;
  Result.SourceFilename := ASourceFilename;
  Result.SourceLinenumber := ASourceLinenumber;
end;

function TTree.FindElement(const AName: string): TPasElement;
begin
  Result := nil;
end;

{ The parser looks for the files of resource directives. }
function WithoutResources(const FileName: string): TStream;
begin
  with TStringList.Create do
    try
      LoadFromFile(FileName);
      Result := TStringStream.Create(StringReplace(Text, '{$R', '{ R', [rfReplaceAll, rfIgnoreCase]));
    finally
      Free;
    end;
end;

function Parse(const FileName: string): string;
var
  Resolver: TStreamResolver;
  Scanner: TPascalScanner;
  Parser: TPasParser;
  Tree: TTree;
  Module: TPasModule;
begin
  Result := 'ok';
  Module := nil;
  Resolver := TStreamResolver.Create;
  Resolver.OwnsStreams := True;
  Tree := TTree.Create;
  Scanner := TPascalScanner.Create(Resolver);
  Scanner.Options := Scanner.Options + [po_KeepClassForward];
  Scanner.SetCompilerMode('DELPHI');
  Scanner.SkipComments := True;
  Parser := TPasParser.Create(Scanner, Resolver, Tree);
  try
    try
      Resolver.AddStream(FileName, WithoutResources(FileName));
      Scanner.OpenFile(FileName);
      Parser.ParseMain(Module);
    except
      on E: Exception do
        Result := Format('%d: %s', [Scanner.CurRow, E.Message]);
    end;
  finally
    Parser.Free;
    Scanner.Free;
    Tree.Free;
    Resolver.Free;
  end;
end;

var
  Name: string;
begin
  while not EOF do
  begin
    ReadLn(Name);
    WriteLn(Parse(Name));
  end;
end.
