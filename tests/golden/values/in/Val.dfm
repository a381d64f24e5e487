object DM: TDM
  object M: TBatchMove
    EndDate = 36526d
    Empty = ()
    None = nil
    NoSet = []
    NoItems = <>
    Set = [a, b ,c]
    Minus = -1.5
    Exp = 2.5e+3
    Codes = #1057#1058'x'#13#10'y'
    Blob = {
      0A0B
      0C}
    Ref = Form1.Query1
    A.B.C = 1
    Numbers = (
      1
      -2.5)
    Items = <
      item
        Inner = <
          item
            X = 1
          end>
      end>
    Text = 'end object Q: TQuery {'
  end
  object Grid: TGrid
    Columns = <
      item
        Title.Caption = 'object'
      end
      item
        Width = 1
      end>
    Picture.Data = {
      0123
      END object}
    object Q: TUpdateSQL
      END_ = 1
      Left = 2
    end
  end
end
