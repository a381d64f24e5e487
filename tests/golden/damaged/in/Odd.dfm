unit Odd;
type
  TOdd = object
    Next: TQuery;
  end;
